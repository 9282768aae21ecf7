#include "attachfiles/AttachFileMonitor.h"

AttachFileMonitor::AttachFileMonitor() = default;
AttachFileMonitor::AttachFileMonitor(const AttachFileMonitor&) = default;
AttachFileMonitor& AttachFileMonitor::operator=(const AttachFileMonitor&) = default;
AttachFileMonitor::~AttachFileMonitor() = default;

void AttachFileMonitor::SetMsgReceiver(QWidget* wnd, unsigned msg)
{
    m_msgWnd = wnd;
    m_msgId = msg;
}

int AttachFileMonitor::Start()
{
    // Kept: nothing is watched here; a watcher outside the control posts the message.
    return 1;
}

void AttachFileMonitor::Stop() { }
