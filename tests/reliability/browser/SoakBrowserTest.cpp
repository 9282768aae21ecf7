// Hours of use in one process: notes opened, written, illustrated, searched, saved. Nothing grows
// without end.

#include "kit/Answers.h"
#include "reliability/browser/OpenNoteFixture.h"
#include "reliability/browser/Usage.h"

#include "attachstore/FileRecord.h"
#include "capture/ScreenCaptureDlgBase.h"
#include "support/LogWriter.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <algorithm>
#include <map>
#include <random>
#include <unistd.h>

namespace {

constexpr int operationsOfAWindow = 250;
constexpr double megabyte = 1024 * 1024;

double median(std::vector<double> values)
{
    const auto middle = values.begin() + long(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// What both processes hold, looked at after each few operations.
struct Samples {
    std::vector<double> host, page, hostHandles, pageHandles;

    void take(qint64 renderProcess)
    {
        host.push_back(double(usage::memoryOf(::getpid())) / megabyte);
        page.push_back(double(usage::memoryOf(renderProcess)) / megabyte);
        hostHandles.push_back(usage::handlesOf(::getpid()));
        pageHandles.push_back(usage::handlesOf(renderProcess));
    }
};

class Soak : public OpenNoteFixture {
protected:
    using Operation = void (Soak::*)();

    QTemporaryDir dir;
    Answers answers;
    std::mt19937 random{3};
    /// What a host keeps of a save, to open the note again: its file, and the sizes of all it has.
    struct Filed {
        QString guid;
        QString name;
        std::map<QString, quint64> sizes;
    };
    std::vector<Filed> filed;

    unsigned below(unsigned count) { return unsigned(random() % count); }

    QString someHtml()
    {
        QString html;
        for (unsigned i = 1 + below(60); i > 0; --i)
            html += QStringLiteral("<p>paragraph %1 with <b>bold</b> and <font color=\"red\">red"
                                   "</font> words 中文</p>")
                        .arg(random());
        return html;
    }

    QString someFile()
    {
        const unsigned number = below(20);
        const QString path = dir.filePath(
            QStringLiteral("%1.%2").arg(number).arg(QLatin1String(number % 2 ? "txt" : "png")));
        if (!QFile::exists(path)) {
            if (number % 2) {
                QFile file(path);
                EXPECT_TRUE(file.open(QIODevice::WriteOnly));
                file.write(QByteArray(int(1000 * number), char('a' + number)));
            } else {
                QImage image(100 + int(number), 80, QImage::Format_RGB32);
                image.fill(QColor::fromHsv(int(number * 18), 200, 200));
                EXPECT_TRUE(image.save(path));
            }
        }
        return path;
    }

    static std::unique_ptr<QMimeData> fileData(const QString& path)
    {
        auto data = std::make_unique<QMimeData>();
        data->setUrls({QUrl::fromLocalFile(path)});
        return data;
    }

    // --- What a user and a host do ---

    void load() { show(someHtml()); }
    void loadFiled()
    {
        if (filed.empty())
            return load();
        const Filed& note = filed[below(unsigned(filed.size()))];
        guid = note.guid;
        control().LoadEditor(guid, {note.name}, note.sizes, 0);
        settle();
    }
    void newNote()
    {
        control().NewEditor(guid, 0);
        settle();
    }
    void type()
    {
        focus();
        QTest::keyClicks(bench.input(), QStringLiteral("typed words"));
        pressLast(Qt::Key_Shift);
    }
    void dropFile() { drop(*fileData(someFile())); }
    void dropText()
    {
        QMimeData data;
        data.setText(QStringLiteral("dropped words"));
        drop(data);
    }
    void pasteHtml() { paste(htmlData(someHtml())); }
    void pasteFile() { paste(fileData(someFile())); }
    void pastePixels()
    {
        auto data = std::make_unique<QMimeData>();
        QImage image(200, 100, QImage::Format_RGB32);
        image.fill(QColor::fromHsv(int(below(360)), 100, 200));
        data->setImageData(image);
        paste(std::move(data));
    }
    void attach() { handler().AddDropFileToEditor({*attachstore::RecordOfPath(someFile())}); }
    /// By the page's button; the user draws a rectangle and takes it by a double click.
    void capture()
    {
        const QStringList before = bench.attachmentNames();
        const Answers user([](QDialog* dialog) {
            EXPECT_TRUE(dynamic_cast<ScreenCaptureDlgBase*>(dialog));
            QTest::mousePress(dialog, Qt::LeftButton, {}, QPoint(300, 300));
            QTest::mouseMove(dialog, QPoint(404, 364));
            QTest::mouseRelease(dialog, Qt::LeftButton, {}, QPoint(404, 364));
            QTest::mouseDClick(dialog, Qt::LeftButton, {}, QPoint(350, 330));
            return true;
        });
        bench.js(QStringLiteral("CppProcessor('SreenCapture', '{\"hideMainWnd\":false}', ''); 1"));
        // What was selected goes, so there may be fewer pictures than before.
        EXPECT_TRUE(waitFor([&] {
            const QStringList names = bench.attachmentNames();
            return std::any_of(names.begin(), names.end(),
                [&](const QString& name) { return !before.contains(name); });
        }));
        figures::add("captures of the soak");
    }
    void highlight() { handler().HighlightText(QStringLiteral("words")); }
    void clearHighlight() { handler().CancleHighlight(); }
    void save()
    {
        control().SaveEditor();
        if (!host().saves.empty()) {
            const auto& [savedGuid, files, text] = host().saves.back();
            Filed note{savedGuid, files[0].fileName, {}};
            for (const NewAttachFile& file : files)
                note.sizes[file.fileName] = quint64(QFileInfo(file.filePath).size());
            filed.push_back(std::move(note));
        }
        if (filed.size() > 50)
            filed.erase(filed.begin());
        host().saves.clear();
    }
    void undo()
    {
        focus();
        press(below(3) ? Qt::Key_Z : Qt::Key_Y);
        pressLast(Qt::Key_Shift);
    }
    void copy()
    {
        focus();
        press(Qt::Key_A);
        press(Qt::Key_C);
        pressLast(Qt::Key_Shift);
    }
    void switchMode()
    {
        control().SetReadOnly(1);
        control().SetReadOnly(0);
    }
    void exportNote()
    {
        QString html;
        control().GetLastHtml(html);
        const QString path = dir.filePath(QStringLiteral("note.mht"));
        if (!html.isEmpty()) {
            EXPECT_TRUE(NmWebNoteHandler::NoteHtmlContentToMhtFileWithPictures(html, path));
        }
    }
    void findAttachment() { handler().SelectedAttach(QStringLiteral("1")); }
    void readText() { html(); }

    static constexpr Operation operations[] = {&Soak::load, &Soak::loadFiled, &Soak::newNote,
        &Soak::type, &Soak::type, &Soak::type, &Soak::dropFile, &Soak::dropText, &Soak::pasteHtml,
        &Soak::pasteFile, &Soak::pastePixels, &Soak::attach, &Soak::capture, &Soak::highlight,
        &Soak::clearHighlight, &Soak::save, &Soak::save, &Soak::undo, &Soak::copy,
        &Soak::switchMode, &Soak::exportNote, &Soak::findAttachment, &Soak::readText};

    /// The growth from the window behind the warm-up to the last one.
    static double growth(const std::vector<double>& samples, std::size_t warm, std::size_t window)
    {
        const auto first = samples.begin() + long(warm);
        return median({samples.end() - long(window), samples.end()})
            - median({first, first + long(window)});
    }
};

} // namespace

TEST_F(Soak, AfterTheFirstThousandOperationsNothingGrows)
{
    const int count = figures::isDeep() ? 10'000 : 300;
    const int warm = figures::isDeep() ? 1000 : 50;
    const qint64 page = bench.page()->renderProcessPid();
    constexpr int step = 10;
    Samples samples;
    for (int i = 0; i < count && !HasFatalFailure(); ++i) {
        if (i % step == 0)
            samples.take(page);
        (this->*operations[below(std::size(operations))])();
    }
    EXPECT_EQ(bench.page()->renderProcessPid(), page) << "the page has died";
    EXPECT_TRUE(handler().HighlightText(QString()));

    const std::size_t window = operationsOfAWindow / step / (figures::isDeep() ? 1 : 2);
    const double host = growth(samples.host, std::size_t(warm / step), window);
    const double inPage = growth(samples.page, std::size_t(warm / step), window);
    const double hostHandles = growth(samples.hostHandles, std::size_t(warm / step), window);
    const double pageHandles = growth(samples.pageHandles, std::size_t(warm / step), window);
    figures::add("operations of the soak", count);
    figures::atLeast("megabytes that the host grew in the soak, behind the warm-up", host);
    figures::atLeast("megabytes that the page grew in the soak, behind the warm-up", inPage);
    figures::atLeast("handles that the host gained in the soak, behind the warm-up", hostHandles);
    figures::atLeast("handles that the page gained in the soak, behind the warm-up", pageHandles);
    // Both collect their garbage when they like: a window's median wanders by some megabytes. A
    // leak of four kilobytes an operation would be 36 in nine thousand.
    constexpr double mayWander = 32;
    EXPECT_LT(host, mayWander);
    EXPECT_LT(inPage, mayWander);
    // The engine keeps a few pipes and shared memories more or less.
    EXPECT_LT(hostHandles, 16);
    EXPECT_LT(pageHandles, 16);
    EXPECT_LE(QFileInfo(GetAppDir() + QStringLiteral("NomarEditor.log")).size(),
        qint64(LogWriter::kSizeLimit) + 1024 * 1024);
}
