#include "platform/WindowMessage.h"

#include <QCoreApplication>
#include <QWidget>

WindowMessage::WindowMessage(int message)
    : QEvent(QEvent::Type(message))
    , m_record(nullptr, [](void*) {})
{
}

WindowMessage::~WindowMessage() = default;

bool IsPrivateMessage(const QEvent& event)
{
    switch (int(event.type())) {
    case WM_ATTACH_FILE_MODIFY:
    case WM_CLEAR_EDITOR_CACHE:
    case WM_EDITOR_COPY:
    case WM_EDITOR_READY:
        return true;
    default:
        return false;
    }
}

void PostWindowMessage(QWidget* receiver, int message)
{
    if (receiver)
        QCoreApplication::postEvent(receiver, new WindowMessage(message));
}
