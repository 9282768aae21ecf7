// A hundred cards, drawn and on the disk: against the same painting with the writing of files that
// are ready, and against ImageMagick.

#include "Figure.h"

#include "attachstore/Card.h"
#include "attachstore/ImageManager.h"
#include "support/DiskFile.h"
#include "support/Paths.h"

#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>

namespace {

constexpr int kCards = 100;

void require(bool condition, const char* what)
{
    if (!condition)
        throw std::runtime_error(what);
}

struct Card {
    FILE_TYPE type;
    QString name;
    QString info;
    QString file;
    // As it came out:
    QByteArray bytes;
    int width = 0;
};

struct Cards {
    explicit Cards(const QString& place)
        : directory(place + QStringLiteral("/cards-XXXXXX"))
    {
    }

    QTemporaryDir directory;
    std::vector<Card> cards;
};

Card makeCard(const QString& directory, int number)
{
    const auto type = static_cast<FILE_TYPE>(number % 11);
    return {type, QString::fromUtf8("季度工作报告 Quarterly report %1.ext").arg(number),
        QStringLiteral("2024/05/%1 12:30 %2KB")
            .arg(number % 28 + 1, 2, 10, QChar(u'0'))
            .arg(number),
        directory + QStringLiteral("/%1.bmp").arg(number), {}};
}

void draw(const Card& card)
{
    require(attachstore::GenerateFileThumb(card.type, card.name, card.info, card.file, nullptr),
        "no card");
}

std::shared_ptr<const Cards> makeCards(const QString& place)
{
    auto made = std::make_shared<Cards>(place);
    for (int number = 0; number < kCards; ++number) {
        Card card = makeCard(made->directory.path(), number);
        draw(card);
        QFile file(card.file);
        require(file.open(QIODevice::ReadOnly), "no file");
        card.bytes = file.readAll();
        card.width = static_cast<int>(card.bytes.size() - 54) / 96;
        made->cards.push_back(card);
    }
    return made;
}

// Width first, then the strokes: nothing is written.
void paint(const Card& card, const QFont& font)
{
    const QFontMetricsF metrics(font);
    const qreal text =
        std::max(metrics.horizontalAdvance(card.name), metrics.horizontalAdvance(card.info));
    const int width = static_cast<int>(std::ceil(text)) + 58;
    QImage image(width, 48, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    const QColor frame(200, 200, 200);
    painter.fillRect(1, 0, width - 2, 1, frame);
    painter.fillRect(1, 47, width - 2, 1, frame);
    painter.fillRect(0, 1, 1, 46, frame);
    painter.fillRect(width - 1, 1, 1, 46, frame);
    painter.drawImage(
        6, 8, *SingletonTemplate<ImageManager>::GetInstance()->GetFileTypeBitmap(card.type));
    painter.setPen(QColor(0x44, 0x44, 0x44));
    painter.setFont(font);
    painter.drawText(QPointF(50, 17), card.name);
    painter.drawText(QPointF(50, 35), card.info);
}

void write(const Card& card)
{
    OutputFile file;
    require(file.create(card.file) == 0, "no file");
    require(file.write(card.bytes.constData(), card.bytes.size()) == 0, "a write failed");
    require(file.flushAndClose() == 0, "a flush failed");
}

// The seconds of all cards by `work`, each a new file.
bench::Side overCards(
    std::shared_ptr<const Cards> cards, std::function<void(const std::vector<Card>&)> work)
{
    return [=] {
        for (const Card& card : cards->cards)
            QFile::remove(card.file);
        return bench::timed([&] { work(cards->cards); })();
    };
}

void magick(const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("convert-im6.q16"), arguments); // as Debian names it
    require(process.waitForStarted(), "ImageMagick is not installed");
    require(process.waitForFinished(-1) && process.exitCode() == 0, "ImageMagick failed");
}

// One process, with one face for everything; it would take longer to look for one.
void drawByMagick(const std::vector<Card>& cards)
{
    const ImageManager& icons = *SingletonTemplate<ImageManager>::GetInstance();
    QStringList arguments{QStringLiteral("-font"),
        QStringLiteral("/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc"),
        QStringLiteral("-pointsize"), QStringLiteral("10")};
    for (const Card& card : cards) {
        const QString frame = QStringLiteral("roundrectangle 0,0 %1,47 1,1").arg(card.width - 1);
        arguments += {QStringLiteral("("), QStringLiteral("-size"),
            QStringLiteral("%1x48").arg(card.width), QStringLiteral("xc:white"),
            QStringLiteral("-fill"), QStringLiteral("none"), QStringLiteral("-stroke"),
            QStringLiteral("#c8c8c8"), QStringLiteral("-draw"), frame, QStringLiteral("-stroke"),
            QStringLiteral("none"), GetResFilePath(icons.GetFileTypeImageName(card.type)),
            QStringLiteral("-geometry"), QStringLiteral("+6+8"), QStringLiteral("-composite"),
            QStringLiteral("-fill"), QStringLiteral("#444444"), QStringLiteral("-annotate"),
            QStringLiteral("+50+17"), card.name, QStringLiteral("-annotate"),
            QStringLiteral("+50+35"), card.info, QStringLiteral("-write"),
            QStringLiteral("bmp3:") + card.file, QStringLiteral("+delete"), QStringLiteral(")")};
    }
    arguments += {QStringLiteral("xc:white"), QStringLiteral("null:")};
    magick(arguments);
}

// Without the start of the process, which a host does not have.
bench::Side magickSide(std::shared_ptr<const Cards> cards)
{
    const bench::Side all = overCards(std::move(cards), drawByMagick);
    const bench::Side start = bench::timed([] {
        magick({QStringLiteral("xc:white"), QStringLiteral("null:")});
    });
    return [=] {
        const double seconds = all();
        return seconds - start();
    };
}

std::vector<bench::Figure> measure()
{
    QFont font(QFontDatabase::systemFont(QFontDatabase::GeneralFont).families());
    font.setPixelSize(10);
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    font.setHintingPreference(QFont::PreferVerticalHinting);

    const auto drawAll = [](const std::vector<Card>& all) {
        for (const Card& card : all)
            draw(card);
    };
    const auto paintAndWriteAll = [font](const std::vector<Card>& all) {
        for (const Card& card : all) {
            paint(card, font);
            write(card);
        }
    };
    const auto onDisk = makeCards(QDir::tempPath());
    // Drawing is compared here: the peer flushes nothing, and in memory neither do we.
    const auto inMemory = makeCards(QStringLiteral("/dev/shm"));
    return {bench::atMost("100 cards, against the same painting and ready files", 1.15,
                overCards(onDisk, drawAll), overCards(onDisk, paintAndWriteAll), 15),
        bench::timesFaster("100 cards, against ImageMagick", 5, overCards(inMemory, drawAll),
            magickSide(inMemory))};
}

const bench::Registration registration{"cards", measure};

} // namespace
