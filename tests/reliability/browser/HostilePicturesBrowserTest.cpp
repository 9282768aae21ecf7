// Pictures that say to be huge, unpack without end or break off, by each way a picture has into the
// note: as a file, as pixels on the clipboard, inside pasted HTML, and with a drag.

#include "kit/Answers.h"
#include "reliability/browser/MadePictures.h"
#include "reliability/browser/OpenNoteFixture.h"
#include "reliability/browser/Usage.h"

#include <QTemporaryDir>

#include <unistd.h>

namespace {

class HostilePictures : public OpenNoteFixture {
protected:
    QTemporaryDir dir;
    Answers answers;

    QString file(const MadePicture& picture)
    {
        QFile file(dir.filePath(picture.name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(picture.bytes);
        return file.fileName();
    }

    static QString typeOf(const MadePicture& picture)
    {
        const QString extension = picture.name.section(u'.', -1);
        return QStringLiteral("image/")
            + (extension == u"jpg"        ? QStringLiteral("jpeg")
                    : extension == u"tif" ? QStringLiteral("tiff")
                                          : extension);
    }

    void bringInEveryWay(const MadePicture& picture)
    {
        SCOPED_TRACE(picture.name.toStdString());
        // As other programs offer pixels.
        auto pixels = std::make_unique<QMimeData>();
        pixels->setData(typeOf(picture), picture.bytes);
        send<QDragEnterEvent>(*pixels);
        send<QDragMoveEvent>(*pixels);
        send<QDropEvent>(*pixels);
        paste(std::move(pixels));
        // Inside of HTML.
        paste(htmlData(QStringLiteral("<p>words<img src=\"data:%1;base64,%2\"></p>")
                           .arg(typeOf(picture), QString::fromLatin1(picture.bytes.toBase64()))));
        // As a file, which the engine shows then.
        auto files = std::make_unique<QMimeData>();
        files->setUrls({QUrl::fromLocalFile(file(picture))});
        paste(std::move(files));
        EXPECT_TRUE(waitFor([&] {
            return bench.inNote(QStringLiteral("[...doc.images].every(i => i.complete)")).toBool();
        }));
        view()->grab();
    }

    /// Whether the note and the page that it stands in are what they were.
    void expectAlive(qint64 page)
    {
        EXPECT_EQ(bench.page()->renderProcessPid(), page);
        EXPECT_TRUE(noteText().startsWith(QStringLiteral("before"))) << noteText().toStdString();
    }
};

} // namespace

TEST_F(HostilePictures, ABombIsNeverDecoded)
{
    const std::vector<MadePicture> pictures = pictureBombs();
    const qint64 page = bench.page()->renderProcessPid();
    usage::resetPeak();
    const qint64 before = usage::memoryOf(::getpid());
    for (const MadePicture& picture : pictures) {
        show(QStringLiteral("<p>before</p>"));
        bringInEveryWay(picture);
        expectAlive(page);
    }
    const qint64 taken = usage::peak() - before;
    // What one picture of the largest size that is let in takes, twice: decoded and encoded anew.
    EXPECT_LT(taken, qint64(512) * 1024 * 1024);
    figures::atLeast("megabytes that picture bombs took", double(taken) / (1024 * 1024));
    figures::add("picture bombs by four ways, none went off", long(pictures.size()));
}

TEST_F(HostilePictures, APictureThatBreaksOffHarmsNothing)
{
    const std::vector<MadePicture> pictures = cutPictures();
    ASSERT_GT(pictures.size(), 30u);
    const qint64 page = bench.page()->renderProcessPid();
    // In the short run each cut of a few formats, in the long one of all.
    for (std::size_t i = 0; i < pictures.size(); i += figures::isDeep() ? 1 : 5) {
        show(QStringLiteral("<p>before</p>"));
        bringInEveryWay(pictures[i]);
        expectAlive(page);
        figures::add("pictures cut off, by four ways");
    }
}
