#pragma once

#include "support/Export.h"

#include <QEvent>

#include <memory>

class QWidget;

/// Numbers of the private messages. An event's type is the number itself.
enum : int {
    WM_ATTACH_FILE_MODIFY = 2224, ///< An attachment file changed on disk. Goes to the control.
    WM_CLEAR_EDITOR_CACHE = 2258, ///< The page's note was replaced. Goes to the browser's widget.
    WM_EDITOR_COPY = 8004, ///< The browser was given its copy command. Likewise.
    WM_EDITOR_READY = 8005, ///< The page is up. Goes to the control's parent, once.
};

/// A private message, carried by the event queue. Post it with `QCoreApplication::postEvent`,
/// which owns the event from then on.
///
/// A message may carry a heap record (`carrying`). The receiver that takes it (`takeRecord`) owns
/// it; a record that nobody takes goes with the event, also when the event is never delivered
/// because its receiver is gone.
class NOMAR_EXPORT WindowMessage : public QEvent {
public:
    explicit WindowMessage(int message);
    ~WindowMessage() override;

    /// A message whose record is `record`. A null record is allowed.
    template <typename Record>
    static WindowMessage* carrying(int message, std::unique_ptr<Record> record)
    {
        auto* event = new WindowMessage(message);
        event->m_record = Holder(record.release(), [](void* p) { delete static_cast<Record*>(p); });
        return event;
    }

    /// Hands the record over; null if there is none or it was taken. `Record` must be the type that
    /// the sender gave to `carrying`.
    template <typename Record> std::unique_ptr<Record> takeRecord()
    {
        return std::unique_ptr<Record>(static_cast<Record*>(m_record.release()));
    }

    /// The message number, equal to `type()`.
    int message() const { return int(type()); }

private:
    using Holder = std::unique_ptr<void, void (*)(void*)>;
    Holder m_record;
};

/// True for the numbers above.
NOMAR_EXPORT bool IsPrivateMessage(const QEvent& event);

/// Posts a message without a record. A null `receiver` is ignored.
NOMAR_EXPORT void PostWindowMessage(QWidget* receiver, int message);
