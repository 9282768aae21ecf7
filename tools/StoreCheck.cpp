#include "StoreCheck.h"

#include "html/HtmlDocument.h"
#include "noteattach/AttachList.h"
#include "noteattach/ExData.h"
#include "notestore/NoteHtmlRW.h"
#include "support/FileMd5.h"
#include "support/Paths.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace nmnote {
namespace {

bool isDigestName(const QString& name)
{
    static const QRegularExpression shape(QStringLiteral("\\A[0-9a-f]{32}(\\.|\\z)"));
    return shape.match(name).hasMatch();
}

QStringList entries(const QString& directory, QDir::Filters kind)
{
    return QDir(directory).entryList(
        kind | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

StoreCheck::StoreCheck(const QString& store)
    : m_store(store)
{
}

bool StoreCheck::run()
{
    if (!QFileInfo(m_store).isDir() || !QFileInfo(m_store).isReadable())
        return false;
    const QStringList folders = entries(m_store, QDir::Dirs);
    const QStringList files = entries(m_store, QDir::Files | QDir::System);
    m_files = QSet<QString>(files.begin(), files.end());
    for (const QString& folder : folders)
        lookAtFolder(folder);
    for (const QString& file : files)
        lookAtFile(file);
    for (const QString& note : std::as_const(m_notes))
        lookAtNote(note);
    return true;
}

void StoreCheck::lookAtFolder(const QString& folder)
{
    for (const QString& name : entries(pathOf(folder), QDir::Files | QDir::System))
        m_foldersOf.insert(name, folder);
}

void StoreCheck::lookAtFile(const QString& name)
{
    if (name.endsWith(QStringLiteral(".tmp"))) {
        m_findings.push_back({Finding::Leftover, name, QString()});
        return;
    }
    if (!isDigestName(name))
        return; // a file of an old note, under its own name
    ++m_fileCount;
    const QString digest = FileMd5(pathOf(name));
    if (digest.isEmpty())
        m_findings.push_back({Finding::Damaged, name, QStringLiteral("cannot be read")});
    else if (digest != name.left(digest.size()))
        m_findings.push_back(
            {Finding::Damaged, name, QStringLiteral("its digest is %1").arg(digest)});
    else if (GetFileExt(name) == QStringLiteral("html"))
        m_notes += name;
}

void StoreCheck::lookAtNote(const QString& note)
{
    QString html;
    NOTE_HTML_VER_NUMBER version;
    if (!NoteHtmlRW::ReadHtmlTextFromFile(pathOf(note), html, &version)) {
        m_findings.push_back({Finding::Damaged, note, QStringLiteral("cannot be read as a note")});
        return;
    }
    std::vector<NewAttachFile> records;
    noteattach::ListAttachments(HtmlDocument(html), records);
    for (const NewAttachFile& record : records) {
        if (record.isSrcFile || noteattach::IsPicFileType(record.fileName))
            lookAtPicture(note, record.fileName, record.origName);
        else
            lookAtAttachment(note, record.fileName, record.origName);
    }
}

void StoreCheck::lookAtPicture(const QString& note, const QString& name, const QString& origName)
{
    if (!m_files.contains(name)) {
        addMissing(note, name);
        return;
    }
    // A note file does not say whose it is, so any folder's copy may be this note's.
    const QStringList folders = m_foldersOf.values(origName);
    if (folders.isEmpty() || !isDigestName(name))
        return;
    for (const QString& folder : folders) {
        if (FileMd5(pathOf(folder + u'/' + origName)) == name.left(32))
            return;
    }
    addOnce({Finding::Changed, folders.first() + u'/' + origName,
        QStringLiteral("the note shows %1").arg(name)});
}

// The file itself lies in the note's folder; that of an old note may lie at the top level.
void StoreCheck::lookAtAttachment(const QString& note, const QString& name, const QString& origName)
{
    if (!m_foldersOf.contains(origName) && !m_files.contains(name))
        addMissing(note, origName.isEmpty() ? name : origName);
}

void StoreCheck::addMissing(const QString& note, const QString& name)
{
    addOnce({Finding::Missing, name, QStringLiteral("wanted by %1").arg(note)});
}

void StoreCheck::addOnce(const Finding& finding)
{
    const QString key = finding.file + u'/' + finding.detail;
    if (m_reported.contains(key))
        return;
    m_reported.insert(key);
    m_findings.push_back(finding);
}

QString StoreCheck::pathOf(const QString& name) const
{
    return m_store + u'/' + name;
}

} // namespace nmnote
