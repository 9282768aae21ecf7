#include "clipdrag/HtmlClipboard.h"

#include "clipdrag/ClipFlavours.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <new>

namespace {

QClipboard* clipboard()
{
    const bool hasDesktop = qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
    return hasDesktop ? QGuiApplication::clipboard() : nullptr;
}

bool putUp(std::unique_ptr<QMimeData> flavours)
{
    QClipboard* const board = clipboard();
    if (!board || !flavours)
        return false;
    board->setMimeData(flavours.release()); // which empties the clipboard and owns what it got
    return true;
}

} // namespace

bool CHtmlClipboard::GetHtmlFragment(std::string& fragment)
try {
    QClipboard* const board = clipboard();
    const QMimeData* const flavours = board ? board->mimeData() : nullptr;
    return flavours && clipdrag::HtmlFragment(*flavours, fragment);
} catch (const std::bad_alloc&) {
    return false;
}

bool CHtmlClipboard::SetHtmlText(const std::string& text)
try {
    return putUp(clipdrag::HtmlFlavours(text));
} catch (const std::bad_alloc&) {
    return false;
}

bool CHtmlClipboard::SetFileDropList(const std::vector<QString>& paths)
try {
    return putUp(clipdrag::FileFlavours(paths));
} catch (const std::bad_alloc&) {
    return false;
}
