#include "Store.h"

#include "Shelf.h"

#include <QDir>
#include <QSaveFile>

using namespace Qt::StringLiterals;

void sweepLeftovers(Shelf& shelf, const QString& storeDir)
{
    const QString store = QDir(storeDir).absolutePath() + u'/';
    shelf.dropLeftovers([&](const QString& path) {
        const QFileInfo file(QDir::cleanPath(path));
        if (!file.filePath().startsWith(store))
            return true;
        const bool gone = !file.exists() || QFile::remove(file.filePath());
        // The last attachment of a note takes the note's folder along.
        if (gone && file.path() + u'/' != store)
            QDir().rmdir(file.path());
        return gone;
    });
}

bool saveCopy(const QString& path, const QString& target)
{
    QFile source(path);
    QSaveFile copy(target);
    if (!source.open(QIODevice::ReadOnly) || !copy.open(QIODevice::WriteOnly))
        return false;
    for (QByteArray piece; !(piece = source.read(1 << 20)).isEmpty();)
        if (copy.write(piece) != piece.size())
            return false;
    return source.error() == QFile::NoError && copy.commit();
}

QString attachmentFile(Shelf& shelf, const QString& storeDir, const QString& noteGuid,
    const QString& fileName, const QString& origName)
{
    for (const NewAttachFile& file : shelf.files(noteGuid)) {
        const bool meant =
            !file.isSrcFile && file.fileName == fileName && file.origName == origName;
        if (meant && QFileInfo(file.filePath).isFile())
            return file.filePath;
    }
    // What a note names is a name and no path: it must not lead out of the store.
    const QFileInfo inStore(QDir(storeDir), fileName);
    const bool inside = inStore.fileName() == fileName && !fileName.contains(QChar::Null);
    return inside && inStore.isFile() ? inStore.absoluteFilePath() : QString();
}

QString noteFile(Shelf& shelf, const QString& storeDir, const QString& noteGuid)
{
    const std::vector<QString> names = shelf.htmlFiles(noteGuid);
    return names.size() == 1 ? QDir(storeDir).filePath(names.front()) : QString();
}
