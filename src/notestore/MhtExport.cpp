#include "notestore/MhtExport.h"

#include "html/HtmlDocument.h"
#include "notestore/MhtWriter.h"
#include "notestore/NoteHtmlRW.h"
#include "notestore/StorePath.h"
#include "notestore/StorePictures.h"
#include "support/Log.h"

#include <algorithm>
#include <exception>
#include <functional>

namespace notestore {
namespace {

constexpr QLatin1StringView kSrc("src");

void log(const QString& text)
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(text);
}

bool convert(const QString& html, QString& converted)
{
    HtmlDocument document(html);
    if (document.elementCount() == 0) {
        converted = html;
        return true;
    }
    const QString base = StoreBase();
    for (qsizetype i = 0; i < document.elementCount(); ++i) {
        // In a note the separator is the backslash on every platform.
        if (const auto src = document.attribute(i, kSrc))
            document.setAttribute(i, kSrc, base + src->sliced(src->lastIndexOf(u'\\') + 1));
    }
    if (!document.hasBody())
        return false;
    converted = document.bodyInnerHtml();
    return true;
}

// One export; what ends it early has its line in the log.
int exported(const QString& mhtPath, const std::function<bool(MhtWriter& file)>& fill)
{
    try {
        MhtWriter file(mhtPath);
        if (file.open() && fill(file) && file.finish())
            return 1;
        // Kept: the reason was meant to follow the blank and never did.
        log(QStringLiteral("[ERROR:] HtmlToMht发生错误，错误信息: "));
    } catch (const std::exception&) {
        log(QStringLiteral("[ERROR:] HtmlToMht 发送未知错误！"));
    }
    return 0;
}

bool addWithPictures(QString html, MhtWriter& file)
{
    const std::vector<StorePicture> pictures =
        TakeStorePictures(html, [&](qsizetype number) { return file.pictureAddress(number); });
    return file.addHtml(html)
        && std::all_of(pictures.begin(), pictures.end(), [&](const StorePicture& picture) {
               return file.addPicture(picture.path, picture.mimeSubtype);
           });
}

// The text of a note file, for `convert`.
int withNoteFile(const QString& htmlPath, const QString& mhtPath,
    int (*convert)(const QString& html, const QString& mhtPath))
{
    QString html;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_0;
    return NoteHtmlRW::ReadHtmlTextFromFile(htmlPath, html, &version) ? convert(html, mhtPath) : 0;
}

} // namespace

int HtmlConvert(const QString& html, QString& converted)
{
    try {
        return convert(html, converted) ? 1 : 0;
    } catch (const std::exception&) {
        // Kept: it names one of the callers, whichever it was.
        log(QStringLiteral("[ERROR] NoteHtmlFileToMhtFile，将图片相对路径转换为绝对路径失败！"));
        return 0;
    }
}

int HtmlToMht(const QString& html, const QString& mhtPath)
{
    return exported(mhtPath, [&](MhtWriter& file) { return file.addHtml(html); });
}

int NoteHtmlContentToMhtFile(const QString& html, const QString& mhtPath)
{
    QString converted;
    return HtmlConvert(html, converted) ? HtmlToMht(converted, mhtPath) : 0;
}

int NoteHtmlFileToMhtFile(const QString& htmlPath, const QString& mhtPath)
{
    return withNoteFile(htmlPath, mhtPath, NoteHtmlContentToMhtFile);
}

int NoteHtmlContentToMhtFileWithPictures(const QString& html, const QString& mhtPath)
{
    return exported(mhtPath, [&](MhtWriter& file) { return addWithPictures(html, file); });
}

int NoteHtmlFileToMhtFileWithPictures(const QString& htmlPath, const QString& mhtPath)
{
    return withNoteFile(htmlPath, mhtPath, NoteHtmlContentToMhtFileWithPictures);
}

} // namespace notestore
