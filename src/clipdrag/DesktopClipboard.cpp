#include "clipdrag/DesktopClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

QClipboard* clipdrag::DesktopClipboard()
{
    const bool hasDesktop = qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
    return hasDesktop ? QGuiApplication::clipboard() : nullptr;
}
