// Each file operation of each thing the store does fails in turn, with each error a disk knows.

#include "reliability/DiskFaults.h"

#include "attachstore/ChangedFile.h"
#include "attachstore/ClosedNote.h"
#include "attachstore/FileRecord.h"
#include "attachstore/Import.h"
#include "noteattach/NewAttachFile.h"
#include "notestore/MhtExport.h"
#include "notestore/NoteAttachRemoval.h"
#include "notestore/NoteHtmlRW.h"
#include "reliability/Figures.h"
#include "support/Paths.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <map>

namespace {

const QString kNote = QStringLiteral("0123456789abcdef0123456789abcdef");

/// Something the store does: `prepare` makes what it works on, `run` does it (1 or 0), `isDone`
/// tells whether its product stands, whole.
struct Operation {
    const char* name;
    std::vector<std::string>
        silent; ///< Calls whose failure leaves no line, as the log's readers know it.
    std::function<void(const TestStore&)> prepare;
    std::function<int(const TestStore&)> run;
    std::function<bool(const TestStore&)> isDone;
};

void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name;
}

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

const Operation kOperations[] = {
    {"Save", {"rename", "stat"}, [](const TestStore&) {}, save,
        [](const TestStore& store) { return anyNoteReads(store, kHtml); }},
    {"SaveOfWhatIsThere", {"rename", "stat"}, [](const TestStore& store) { save(store); }, save,
        [](const TestStore& store) { return anyNoteReads(store, kHtml); }},
    {"ImportOfADocument", {},
        [](const TestStore& store) { writeSource(store, QStringLiteral("a.txt"), "content"); },
        [](const TestStore& store) { return import(store, QStringLiteral("a.txt")); },
        [](const TestStore& store) {
            return readFile(GetAttachFilePath(kNote, QStringLiteral("x"), QStringLiteral("a.txt")))
                == "content"
                && store.names().filter(QStringLiteral(".bmp")).size() == 1;
        }},
    {"ImportOfAPicture", {},
        [](const TestStore& store) { writeSource(store, QStringLiteral("p.png"), png()); },
        [](const TestStore& store) { return import(store, QStringLiteral("p.png")); },
        [](const TestStore& store) {
            return readFile(store.path(digestName(png(), QStringLiteral("png")))) == png();
        }},
    {"RemovalFromANote", {"open", "read", "rename", "stat"},
        [](const TestStore& store) { fileNote(store); },
        [](const TestStore& store) {
            std::vector<NewAttachFile> list;
            return notestore::DelAttachFromHtmlFile(
                store.path(kAttachedFile), kNote, QStringLiteral("a.txt"), list);
        },
        [](const TestStore& store) { return anyNoteReads(store, QStringLiteral("<p>x</p>")); }},
    {"ChangedPicture", {},
        [](const TestStore& store) { writeSource(store, QStringLiteral("p.png"), png()); },
        [](const TestStore& store) {
            QString shown;
            return attachstore::GenerateThumbPic(changed(store, QStringLiteral("p.png")), shown);
        },
        [](const TestStore& store) {
            return readFile(store.path(digestName(png(), QStringLiteral("png")))) == png();
        }},
    {"ChangedDocument", {},
        [](const TestStore& store) { writeSource(store, QStringLiteral("a.txt"), "new"); },
        [](const TestStore& store) {
            QString shown;
            return attachstore::GenerateThumbPic(changed(store, QStringLiteral("a.txt")), shown);
        },
        [](const TestStore& store) {
            return !store.names().filter(QStringLiteral(".bmp")).isEmpty();
        }},
    {"ChangeInAClosedNote", {"rename", "stat"}, [](const TestStore& store) { fileNote(store); },
        rewriteClosed,
        [](const TestStore& store) {
            const QStringList names = store.names().filter(QStringLiteral(".html"));
            return std::any_of(names.begin(), names.end(), [&](const QString& name) {
                return readFile(store.path(name)).contains("attachment\\new.txt");
            });
        }},
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
        }},
};

using Files = std::map<QString, QByteArray>;

Files filesOf(const TestStore& store)
{
    Files files;
    QDirIterator each(store.appDir(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        const QString path = each.next();
        files[path] = readFile(path);
    }
    return files;
}

bool isWhole(const QString& path, const QByteArray& bytes)
{
    const QString name = QFileInfo(path).completeBaseName();
    static const QRegularExpression digest(QStringLiteral("^[0-9a-f]{32}$"));
    return !digest.match(name).hasMatch()
        || name
        == QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

const int kErrors[] = {ENOSPC, EIO, EROFS, EACCES, EDQUOT, EINTR};

/// The short run takes the errors in turn, one for each call; the long one takes them all.
bool isTaken(int call, int error)
{
    return figures::isDeep() || kErrors[std::size_t(call) % std::size(kErrors)] == error;
}

class DiskFault : public testing::TestWithParam<Operation> {
protected:
    static void expectNothingLost(const Files& before, const TestStore& store, bool mayLeave)
    {
        const Files after = filesOf(store);
        for (const auto& [path, bytes] : after) {
            const bool isLeftOver = path.endsWith(QStringLiteral(".tmp"));
            EXPECT_TRUE(!isLeftOver || mayLeave) << "left behind: " << path.toStdString();
            EXPECT_TRUE(isLeftOver || isWhole(path, bytes)) << path.toStdString();
        }
        for (const auto& [path, bytes] : before) {
            const bool isReplaced = path.endsWith(QStringLiteral("out.mht"));
            const auto now = after.find(path);
            EXPECT_TRUE(isReplaced || (now != after.end() && now->second == bytes))
                << path.toStdString();
        }
    }
};

} // namespace

TEST_P(DiskFault, LosesNothingIsToldAndIsOverWhenTheDiskWorksAgain)
{
    const Operation& operation = GetParam();
    std::vector<std::string> calls;
    {
        const TestStore store;
        operation.prepare(store);
        const DiskFaults watching(store.appDir());
        ASSERT_EQ(operation.run(store), 1);
        calls = DiskFaults::calls();
    }
    ASSERT_GT(calls.size(), 2U);

    for (int at = 0; at < int(calls.size()); ++at) {
        for (const int error : kErrors) {
            for (const auto lasting :
                {DiskFaults::Lasting::Once, DiskFaults::Lasting::FromThenOn}) {
                if (!isTaken(at, error))
                    continue;
                if (error == EINTR && lasting == DiskFaults::Lasting::FromThenOn)
                    continue; // no call is interrupted for ever
                const std::string& call = calls[std::size_t(at)];
                SCOPED_TRACE(call + ", number " + std::to_string(at) + ": " + std::strerror(error)
                    + (lasting == DiskFaults::Lasting::Once ? "" : ", lasting"));
                const TestStore store;
                operation.prepare(store);
                const Files before = filesOf(store);
                LoggedLines lines;
                int result = 0;
                {
                    const DiskFaults fault(store.appDir(), at, error, lasting);
                    result = operation.run(store);
                    ASSERT_TRUE(DiskFaults::struck());
                }
                figures::add("disk faults survived");
                const bool isSilent =
                    std::find(operation.silent.begin(), operation.silent.end(), call)
                    != operation.silent.end();
                EXPECT_TRUE(result != 0 || isSilent || !lines.take().isEmpty()) << "not told";
                EXPECT_TRUE(result != 1 || operation.isDone(store)) << "told as done";
                expectNothingLost(before, store, call == "unlink");
                EXPECT_EQ(operation.run(store), 1) << "still fails";
                EXPECT_TRUE(operation.isDone(store));
                if (HasFailure())
                    return;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, DiskFault, testing::ValuesIn(kOperations),
    [](const auto& info) { return info.param.name; });
