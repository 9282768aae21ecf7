#include "notestore/NoteHtmlRW.h"

#include "notestore/HtmlFileUpgrade.h"
#include "notestore/NoteFile.h"
#include "notestore/StorePath.h"
#include "support/DiskFile.h"
#include "support/FileMd5.h"
#include "support/Log.h"
#include "support/Paths.h"
#include "support/Text.h"
#include "support/TimeText.h"

#include <new>
#include <optional>

namespace {

constexpr qint64 kLargestFile = qint64(1) << 30;
constexpr NOTE_HTML_VER_NUMBER kCurrent = NOTE_HTML_VER_2;

std::optional<std::string> readWhole(const QString& path)
{
    InputFile file;
    if (file.open(path) || file.size() > kLargestFile)
        return std::nullopt;
    std::string bytes(static_cast<std::size_t>(file.size()), '\0');
    std::size_t have = 0;
    while (have < bytes.size()) {
        const qint64 count = file.read(bytes.data() + have, bytes.size() - have);
        if (count < 0)
            return std::nullopt; // half a note would be saved as all of it
        if (count == 0)
            break; // shorter by now: zero bytes end the text
        have += static_cast<std::size_t>(count);
    }
    return bytes;
}

void logFailedSave()
{
    SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
        QStringLiteral("[ERROR] NoteHtmlRW::SaveHtmlTextToFile faild!"));
}

NOTE_HTML_VER_NUMBER upgraded(QString& html, NOTE_HTML_VER_NUMBER* version)
{
    if (!version)
        return kCurrent;
    if (*version < kCurrent && HtmlFileUpgradeMgr().DoUpgrade(html, *version, kCurrent, html))
        *version = kCurrent;
    return *version;
}

// Another process may file the same text between the look and the rename; then its file is ours.
bool takeName(UnfinishedFile& temporary, const QString& full)
{
    if (IsFileExist(full))
        return true;
    return temporary.finish(full) == 0 || IsFileExist(full);
}

void fillRecord(NewAttachFile& record, const QString& name, const QString& full)
{
    NewAttachFile filled = record;
    filled.fileName = name;
    filled.filePath = full;
    filled.fileExt = GetFileExt(name);
    filled.fileType = 0;
    filled.modifyTime = FormatNowTime();
    record = filled;
}

int saveToStore(QString& html, NewAttachFile& record, NOTE_HTML_VER_NUMBER* version)
{
    const QString dir = notestore::StoreBase();
    const NOTE_HTML_VER_NUMBER toWrite = upgraded(html, version);

    UnfinishedFile temporary(dir + CreateGuidString() + QStringLiteral(".tmp"));
    OutputFile file;
    if (!notestore::WriteHtmlFile(file, temporary.path(), html, toWrite)) {
        logFailedSave();
        return 0;
    }
    file.beginFlush(); // the disk works while the digest is taken
    qint64 digested = 0;
    const QString digest = FileMd5(temporary.path(), &digested);
    // A digest of less than the file would name it wrongly for ever.
    if (digest.isEmpty())
        return 0;
    if (digested != file.written() || file.flushAndClose()) {
        logFailedSave();
        return 0;
    }

    const QString name = digest + QStringLiteral(".html");
    const QString full = dir + name;
    if (!takeName(temporary, full))
        return 0;
    if (FlushDirectory(dir)) {
        logFailedSave();
        return 0;
    }
    fillRecord(record, name, full);
    return 1;
}

} // namespace

int NoteHtmlRW::ReadHtmlTextFromFile(
    const QString& path, QString& html, NOTE_HTML_VER_NUMBER* version)
{
    try {
        const auto bytes = readWhole(path);
        if (!bytes)
            return 0;
        html = notestore::TakeMarker(AnsiToWide(*bytes), version);
        return 1;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

int NoteHtmlRW::SaveHtmlTextToFile(
    QString& html, NewAttachFile& record, NOTE_HTML_VER_NUMBER* version)
{
    try {
        return saveToStore(html, record, version);
    } catch (const std::bad_alloc&) {
        logFailedSave();
        return 0;
    }
}
