#pragma once

#include "support/Export.h"

#include <QPointer>
#include <QWidget>

/// Knows who is to hear of a changed attachment. A plain value: copies share nothing.
class NOMAR_EXPORT AttachFileMonitor {
public:
    AttachFileMonitor();
    AttachFileMonitor(const AttachFileMonitor&);
    AttachFileMonitor& operator=(const AttachFileMonitor&);
    virtual ~AttachFileMonitor();

    /// Sets the widget and the number of the message that tell of a change. The control does so
    /// with itself and 2224 when its page is first complete.
    void SetMsgReceiver(QWidget* wnd, unsigned msg);
    /// Returns 1 and does nothing else: the message is sent by a watcher outside the control.
    int Start();
    /// Does nothing.
    void Stop();

    /// The receiver; null if there is none or it is gone.
    QWidget* MsgWnd() const { return m_msgWnd; }
    unsigned MsgId() const { return m_msgId; }

private:
    QPointer<QWidget> m_msgWnd;
    unsigned m_msgId = 0;
};
