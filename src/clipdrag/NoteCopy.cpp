#include "clipdrag/NoteCopy.h"

#include "clipdrag/DesktopClipboard.h"
#include "clipdrag/HtmlClipboard.h"
#include "notestore/NoteHtmlRW.h"
#include "support/Paths.h"
#include "support/Text.h"

#include <QClipboard>

int clipdrag::OnCopyContent(const QString& noteHtml, const NoteConverter& convert)
{
    if (noteHtml.isEmpty())
        return 0;
    QString converted;
    const int result = convert(noteHtml, converted);
    if (result)
        CHtmlClipboard::SetHtmlText(WideToUtf8(converted));
    return result;
}

int clipdrag::OnCopyHtml(const QString& noteFilePath, const NoteConverter& convert)
{
    QString html;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_0;
    if (!NoteHtmlRW::ReadHtmlTextFromFile(noteFilePath, html, &version))
        return 0;
    return OnCopyContent(html, convert);
}

void clipdrag::ClearCopyData()
{
    if (QClipboard* const board = DesktopClipboard())
        board->clear();
}

void clipdrag::AddAttachToClipboard(const std::vector<AttachFileInfo>& files)
{
    std::vector<QString> paths;
    for (const AttachFileInfo& file : files) {
        const QString path = PathOnDisk(file.filePath);
        if (!path.isEmpty() && IsFileExist(path))
            paths.push_back(path);
    }
    CHtmlClipboard::SetFileDropList(paths);
}
