#pragma once

#include "platform/Result.h"
#include "platform/Variant.h"
#include "support/Export.h"

#include <QPoint>

class QKeyEvent;
class QMimeData;

/// Calls from the page's script. The browser makes every name that `OnGetFunId` knows callable from
/// script and hands a call to `OnExecuteFun`: queued, in order, never inside another page call.
class NOMAR_EXPORT IJSCallFunNotify {
public:
    virtual ~IJSCallFunNotify();
    /// The id of a name that script may call, or -1.
    virtual long OnGetFunId(const QString& name) = 0;
    /// Carries a call out. `result` and `exception` go nowhere: the call was queued.
    virtual long OnExecuteFun(
        long id, const DISPPARAMS& params, VARIANT& result, QString& exception) = 0;
};

/// Where a drag began.
enum class DragOrigin {
    OtherProcess,
    ThisProcess, ///< In another widget of the host.
    ThisBrowser, ///< In the page: a selection, a picture.
};

/// What the browser itself does with a drag. `*effect` comes in with the `Qt::DropActions` that the
/// source offers and goes out with the one `Qt::DropAction` that is taken, `Qt::IgnoreAction` for
/// none. What follows a `DragEnter` that did not get here is refused.
class NOMAR_EXPORT DropTarget {
public:
    virtual ~DropTarget();
    /// Of the drag that is being delivered; to be asked on entering and on the drop.
    virtual DragOrigin Origin() const = 0;
    virtual long DragEnter(const QMimeData* data, unsigned keyState, QPoint pt, int* effect) = 0;
    virtual long DragOver(unsigned keyState, QPoint pt, int* effect) = 0;
    virtual long DragLeave() = 0;
    virtual long Drop(const QMimeData* data, unsigned keyState, QPoint pt, int* effect) = 0;
};

/// Drags over the browser, seen before it. `S_OK` accepts the event with `*effect` as the action
/// (if the source offers that one), any other result refuses it; arguments as for `DropTarget`. An
/// implementation that lets the browser act forwards to `m_defaultDropTarget`, which the browser
/// sets before the first event.
class NOMAR_EXPORT IIEDragNotify {
public:
    virtual ~IIEDragNotify();
    virtual long OnDragEnter(const QMimeData* data, unsigned keyState, QPoint pt, int* effect) = 0;
    virtual long OnDragOver(unsigned keyState, QPoint pt, int* effect) = 0;
    virtual long OnDragLeave() = 0;
    virtual long OnDrop(const QMimeData* data, unsigned keyState, QPoint pt, int* effect) = 0;

    DropTarget* m_defaultDropTarget = nullptr;
};

/// Menus, script alerts and keys of the browser, seen before it.
class NOMAR_EXPORT IIEUINotify {
public:
    virtual ~IIEUINotify();
    /// `S_OK`: the menu has been handled, the browser shows none.
    virtual long ShowContextMenu() = 0;
    /// `S_OK`: the script's alert has been handled, the browser shows none.
    virtual long ShowMessage(const QString& text) = 0;
    /// Called for each key press. `S_OK`: the browser does not see the key.
    virtual long OnTranslateAccelerator(const QKeyEvent* msg) = 0;
};
