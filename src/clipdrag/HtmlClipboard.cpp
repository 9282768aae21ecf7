#include "clipdrag/HtmlClipboard.h"

#include "clipdrag/ClipFlavours.h"
#include "clipdrag/DesktopClipboard.h"

#include <QClipboard>
#include <QMimeData>

#include <new>

namespace {

bool putUp(std::unique_ptr<QMimeData> flavours)
{
    QClipboard* const board = clipdrag::DesktopClipboard();
    if (!board || !flavours)
        return false;
    board->setMimeData(flavours.release()); // which empties the clipboard and owns what it got
    return true;
}

} // namespace

bool CHtmlClipboard::GetHtmlFragment(std::string& fragment)
try {
    QClipboard* const board = clipdrag::DesktopClipboard();
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
