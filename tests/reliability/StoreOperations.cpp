#include "reliability/StoreOperations.h"

#include "attachstore/ChangedFile.h"
#include "attachstore/ClosedNote.h"
#include "attachstore/FileRecord.h"
#include "attachstore/Import.h"
#include "noteattach/NewAttachFile.h"
#include "notestore/MhtExport.h"
#include "notestore/NoteAttachRemoval.h"
#include "notestore/NoteHtmlRW.h"
#include "support/Paths.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QCryptographicHash>
#include <QImage>

#include <algorithm>

namespace {

const QString kNote = QStringLiteral("0123456789abcdef0123456789abcdef");

QByteArray png()
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QString sourcePath(const TestStore& store, const QString& name)
{
    return store.appDir() + name;
}

void writeSource(const TestStore& store, const QString& name, const QByteArray& bytes)
{
    writeFile(sourcePath(store, name), bytes);
}

int import(const TestStore& store, const QString& name)
{
    MAF_RESULT result;
    auto record = attachstore::RecordOfPath(sourcePath(store, name));
    // What cannot be looked at is no file on its way in: nothing has begun that could be logged.
    if (!record)
        return -1;
    return attachstore::MoveAttFile(kNote, *record, result);
}

const QString kHtml =
    QStringLiteral("<p>笔记 words</p>").repeated(3000); // more than one write can be asked for

QString digestName(const QByteArray& bytes, const QString& ext)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex())
        + u'.' + ext;
}

const QString kAttached =
    QStringLiteral("<p>x<img class=\"userdata\\attachment\\00000000000000000000000000000000.txt\" "
                   "src=\"../userdata\\attachment\\11111111111111111111111111111111.bmp\" "
                   "nm_exdata=\"{&quot;OrigName_B64&quot;:&quot;YS50eHQ=&quot;}\"></p>"); // a.txt

// The name of the file that a note of this text is filed under.
const QString kAttachedFile = digestName(
    QByteArrayLiteral("<!--{\"ver_number\":2}-->") + kAttached.toUtf8(), QStringLiteral("html"));

void fileNote(const TestStore& store)
{
    QString text = kAttached;
    NewAttachFile record;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
    EXPECT_EQ(NoteHtmlRW::SaveHtmlTextToFile(text, record, &version), 1);
    EXPECT_TRUE(store.names().contains(kAttachedFile)) << record.fileName.toStdString();
}

int save(const TestStore&)
{
    QString html = kHtml;
    NewAttachFile record;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
    return NoteHtmlRW::SaveHtmlTextToFile(html, record, &version);
}

bool readsBack(const QString& path, const QString& text)
{
    QString html;
    NOTE_HTML_VER_NUMBER version = {};
    return NoteHtmlRW::ReadHtmlTextFromFile(path, html, &version) && html == text;
}

bool anyNoteReads(const TestStore& store, const QString& text)
{
    const QStringList names = store.names();
    return std::any_of(names.begin(), names.end(), [&](const QString& name) {
        return name.endsWith(QStringLiteral(".html")) && readsBack(store.path(name), text);
    });
}

attachstore::ChangedFile changed(const TestStore& store, const QString& name)
{
    const QString path = sourcePath(store, name);
    const QByteArray bytes = name.endsWith(QStringLiteral(".png")) ? png() : QByteArray("new");
    return {path, qint32(bytes.size()), name, digestName(bytes, QString()).chopped(1), {}};
}

int rewriteClosed(const TestStore& store)
{
    const attachstore::NewImage image{QStringLiteral("a.txt"), QStringLiteral("new.txt"),
        QStringLiteral("new.bmp"), QStringLiteral("2001-02-03 04:05:06")};
    std::vector<NewAttachFile> files;
    QString text;
    const QString note = store.path(kAttachedFile);
    return attachstore::RewriteClosedNote(note, kNote, image, files, text)
        == attachstore::NoteRewrite::Filed;
}

const QString kSaveFailed = QStringLiteral("[ERROR] NoteHtmlRW::SaveHtmlTextToFile faild!");

QStringList failed(const QString& operation, const QStringList& what)
{
    QStringList lines;
    for (const QString& each : what)
        lines += QStringLiteral("[ERROR] ") + operation + u' ' + each;
    return lines;
}

const QString kImport = QStringLiteral("NmWebNoteHandler::MoveAttFile");
const QString kChange = QStringLiteral("CNomarEditorImpl::GenerateThumbPic");
const QString kNoDigest = QStringLiteral("cal md5 code faild ! ");
const QString kNoCopy = QStringLiteral("copy file fald ! ");
const QString kNoShownCopy = QStringLiteral("CopyFile file fald ! ");
const QString kNoCard = QStringLiteral("create thumb pic faild ! ");
const QString kNoName = QStringLiteral("rename file fald ! ");

} // namespace

const std::vector<StoreOperation>& StoreOperations()
{
    static const std::vector<StoreOperation> operations{
        {"Save", {"access", "rename", "stat"}, [](const TestStore&) {}, save,
            [](const TestStore& store) { return anyNoteReads(store, kHtml); }, {kSaveFailed}},
        {"SaveOfWhatIsThere", {"access", "rename", "stat"},
            [](const TestStore& store) { save(store); }, save,
            [](const TestStore& store) { return anyNoteReads(store, kHtml); }, {kSaveFailed}},
        {"ImportOfADocument", {},
            [](const TestStore& store) { writeSource(store, QStringLiteral("a.txt"), "content"); },
            [](const TestStore& store) { return import(store, QStringLiteral("a.txt")); },
            [](const TestStore& store) {
                return readFile(
                           GetAttachFilePath(kNote, QStringLiteral("x"), QStringLiteral("a.txt")))
                    == "content"
                    && store.names().filter(QStringLiteral(".bmp")).size() == 1;
            },
            failed(kImport, {kNoDigest, kNoCopy, kNoCard, kNoName})},
        {"ImportOfAPicture", {},
            [](const TestStore& store) { writeSource(store, QStringLiteral("p.png"), png()); },
            [](const TestStore& store) { return import(store, QStringLiteral("p.png")); },
            [](const TestStore& store) {
                return readFile(store.path(digestName(png(), QStringLiteral("png")))) == png();
            },
            failed(kImport, {kNoDigest, kNoCopy, kNoShownCopy})},
        {"RemovalFromANote", {"access", "open", "read", "rename", "stat"},
            [](const TestStore& store) { fileNote(store); },
            [](const TestStore& store) {
                std::vector<NewAttachFile> list;
                return notestore::DelAttachFromHtmlFile(
                    store.path(kAttachedFile), kNote, QStringLiteral("a.txt"), list);
            },
            [](const TestStore& store) { return anyNoteReads(store, QStringLiteral("<p>x</p>")); },
            {kSaveFailed}},
        {"ChangedPicture", {},
            [](const TestStore& store) { writeSource(store, QStringLiteral("p.png"), png()); },
            [](const TestStore& store) {
                QString shown;
                return attachstore::GenerateThumbPic(
                    changed(store, QStringLiteral("p.png")), shown);
            },
            [](const TestStore& store) {
                return readFile(store.path(digestName(png(), QStringLiteral("png")))) == png();
            },
            failed(kChange, {kNoCopy})},
        {"ChangedDocument", {},
            [](const TestStore& store) { writeSource(store, QStringLiteral("a.txt"), "new"); },
            [](const TestStore& store) {
                QString shown;
                return attachstore::GenerateThumbPic(
                    changed(store, QStringLiteral("a.txt")), shown);
            },
            [](const TestStore& store) {
                return !store.names().filter(QStringLiteral(".bmp")).isEmpty();
            },
            failed(kChange, {kNoDigest, kNoCard, kNoName})},
        {"ChangeInAClosedNote", {"access", "rename", "stat"},
            [](const TestStore& store) { fileNote(store); }, rewriteClosed,
            [](const TestStore& store) {
                const QStringList names = store.names().filter(QStringLiteral(".html"));
                return std::any_of(names.begin(), names.end(), [&](const QString& name) {
                    return readFile(store.path(name)).contains("attachment\\new.txt");
                });
            },
            failed(QStringLiteral("CNomarEditorImpl::DoAttachFileModify"),
                {QStringLiteral("读取笔记内容失败！")})
                + QStringList(kSaveFailed)},
        {"Export", {},
            [](const TestStore& store) {
                writeSource(store, QStringLiteral("out.mht"), "an earlier one");
            },
            [](const TestStore& store) {
                return notestore::NoteHtmlContentToMhtFile(
                    QStringLiteral("<p>words</p>"), sourcePath(store, QStringLiteral("out.mht")));
            },
            [](const TestStore& store) {
                return readFile(sourcePath(store, QStringLiteral("out.mht"))).contains("words");
            },
            {QStringLiteral("[ERROR:] HtmlToMht发生错误，错误信息: ")}, true},
    };
    return operations;
}
