#pragma once

#include <QPointer>

class QWidget;

/// What will become of the drag that hovers.
enum class DragFate {
    Taken,
    Refused, ///< The source offers it in no way that suits.
    ReadOnly, ///< Nothing is taken here now.
};

/// Shows, while a drag hovers over a widget, what will become of it. Stands in the place of the
/// desktop's own helper for drags.
class DropTargetHelper {
public:
    virtual ~DropTargetHelper();
    virtual void DragEnter(QWidget* window, DragFate fate) = 0;
    virtual void DragOver(DragFate fate) = 0;
    virtual void DragLeave() = 0;
    virtual void Drop() = 0;
};

/// A frame in the colour of highlights around the widget with a line that says what a drop does, or
/// a grey one with a line that says why it does nothing. It takes no part in the drag and is gone
/// when the drag is.
class HoverFrame : public DropTargetHelper {
public:
    HoverFrame() = default;
    ~HoverFrame() override;
    HoverFrame(const HoverFrame&) = delete;
    HoverFrame& operator=(const HoverFrame&) = delete;

    void DragEnter(QWidget* window, DragFate fate) override; ///< A null `window` shows nothing.
    void DragOver(DragFate fate) override;
    void DragLeave() override;
    void Drop() override;

private:
    class Frame;
    QPointer<Frame> m_frame; // The widget's child, which may go with it.
};
