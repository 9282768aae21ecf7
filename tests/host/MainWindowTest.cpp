#include "MainWindow.h"

#include <nomareditor/AppDirs.h>
#include <nomareditor/CNomarEditorImpl.h>

#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

/// Until `holds`; false if it does not become so in time.
template <typename Condition> bool waitFor(Condition holds)
{
    return QTest::qWaitFor(holds, 20'000);
}

/// The largest step between two pixels that lie side by side in one block of two by two, as a part
/// of the whole contrast. A picture that was enlarged twice has none, or half of it when smoothed.
double sharpestStep(const QImage& picture)
{
    int step = 0, darkest = 255, lightest = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x + 1 < picture.width(); x += 2) {
            const int left = qGray(picture.pixel(x, y)), right = qGray(picture.pixel(x + 1, y));
            step = std::max(step, std::abs(left - right));
            darkest = std::min({darkest, left, right});
            lightest = std::max({lightest, left, right});
        }
    return lightest - darkest < 100 ? 0 : double(step) / (lightest - darkest);
}

} // namespace

/// The window over an empty shelf, its page up.
class MainWindowTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(storeDir));
        ASSERT_TRUE(shelf.open(dir.filePath(u"shelf.sqlite"_s)));
        window = std::make_unique<MainWindow>(shelf, storeDir, settings);
        pane = window->findChild<EditorPane*>();
        list = window->findChild<QListView*>();
        window->show();
        ASSERT_TRUE(waitFor([&] { return action(u"New note"_s)->isEnabled(); }));
    }

    QAction* action(const QString& text) const
    {
        for (QAction* action : window->findChildren<QAction*>())
            if (action->text() == text)
                return action;
        ADD_FAILURE() << "no action " << qPrintable(text);
        return nullptr;
    }
    NmWebNoteHandler& page() const { return window->findChild<CNomarEditorImpl*>()->Handler(); }
    QString pageText() const
    {
        QString html, text;
        page().GetEditorContent(html, text);
        return text;
    }
    bool shows(const QString& text) const
    {
        return waitFor([&] { return pageText().contains(text); });
    }
    void write(const QString& text) const
    {
        page().SetEditorHtml(u"<p>"_s + text + u"</p>"_s);
        ASSERT_TRUE(shows(text));
    }
    /// Makes a note of that text by the button, and saves it.
    QString makeNote(const QString& text)
    {
        action(u"New note"_s)->trigger();
        write(text);
        EXPECT_TRUE(pane->saveNote());
        const QString guid = pane->noteGuid();
        // The list hears of a save later.
        EXPECT_TRUE(waitFor([&] { return shelf.note(guid) && rowOf(guid).isValid(); }));
        return guid;
    }
    QModelIndex rowOf(const QString& guid) const
    {
        auto* notes = window->findChild<NoteList*>();
        return notes->index(notes->rowOf(guid));
    }
    /// By the button, the question answered with yes.
    void emptyBin() const
    {
        QTimer answer;
        QObject::connect(&answer, &QTimer::timeout, [] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                box->button(QMessageBox::Yes)->click();
        });
        answer.start(5);
        action(u"Empty bin"_s)->trigger();
    }
    /// As a click does.
    void choose(const QString& guid) { list->setCurrentIndex(rowOf(guid)); }

    QTemporaryDir dir;
    const QString storeDir = QDir(GetAppDir()).filePath(u"userdata/attachment"_s);
    Shelf shelf;
    QSettings settings{dir.filePath(u"host.ini"_s), QSettings::IniFormat};
    std::unique_ptr<MainWindow> window;
    EditorPane* pane = nullptr;
    QListView* list = nullptr;
};

TEST_F(MainWindowTest, EmptyingTheBinKeepsTheTextOfANoteThatCannotBeSaved)
{
    makeNote(u"to be deleted"_s);
    action(u"Move to bin"_s)->trigger();
    ASSERT_EQ(shelf.binCount(), 1);
    const QString open = makeNote(u"filed words"_s);
    write(u"words of the page alone"_s);
    const QString away = storeDir + u".away"_s;
    ASSERT_TRUE(QDir().rename(storeDir, away));
    QFile inTheWay(storeDir);
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    ASSERT_FALSE(pane->saveNote());

    action(u"Bin (1)"_s)->trigger();
    ASSERT_EQ(pane->noteGuid(), open) << "what cannot be saved is not left";
    emptyBin();
    EXPECT_EQ(shelf.binCount(), 0);
    EXPECT_EQ(pane->noteGuid(), open);
    EXPECT_TRUE(shows(u"words of the page alone"_s));

    ASSERT_TRUE(inTheWay.remove() && QDir().rename(away, storeDir));
    EXPECT_TRUE(pane->saveNote());
    EXPECT_EQ(shelf.note(open)->title, u"words of the page alone"_s);
}

TEST_F(MainWindowTest, EmptyingTheBinClosesTheBinnedNoteThatIsOpen)
{
    const QString kept = makeNote(u"kept"_s);
    const QString binned = makeNote(u"to be deleted"_s);
    action(u"Move to bin"_s)->trigger();
    action(u"Bin (1)"_s)->trigger();
    ASSERT_EQ(pane->noteGuid(), binned);
    emptyBin();
    EXPECT_FALSE(shelf.note(binned));
    EXPECT_EQ(pane->noteGuid(), kept);
    EXPECT_TRUE(shows(u"kept"_s));
}

TEST_F(MainWindowTest, OfTwoNotesChosenInARowTheLaterIsOpened)
{
    const QString first = makeNote(u"first"_s);
    const QString second = makeNote(u"second"_s);
    makeNote(u"third"_s);
    choose(first);
    choose(second);
    EXPECT_TRUE(waitFor([&] { return pane->noteGuid() == second; }));
    EXPECT_TRUE(shows(u"second"_s));
}

TEST_F(MainWindowTest, ANoteThatIsAskedForInsideAnothersSaveIsTheOneThatIsOpened)
{
    const QString first = makeNote(u"first"_s);
    const QString second = makeNote(u"second"_s);
    makeNote(u"third"_s);
    choose(first);
    // Behind the opening of the first in the queue: met by the loop in which its save waits.
    QMetaObject::invokeMethod(
        window.get(), [&] { choose(second); }, Qt::QueuedConnection);
    EXPECT_TRUE(waitFor([&] { return pane->noteGuid() == second; }));
    EXPECT_TRUE(shows(u"second"_s));
    EXPECT_EQ(list->currentIndex(), rowOf(second));
}

TEST_F(MainWindowTest, ANewNoteIsNotReplacedByOneThatWasChosenBefore)
{
    const QString first = makeNote(u"first"_s);
    const QString second = makeNote(u"second"_s);
    choose(first);
    action(u"New note"_s)->trigger();
    const QString made = pane->noteGuid();
    EXPECT_NE(made, first);
    EXPECT_NE(made, second);
    QCoreApplication::processEvents();
    EXPECT_EQ(pane->noteGuid(), made);
}

TEST_F(MainWindowTest, FiguresOfOneAreInTheSingular)
{
    const auto told = [&](const QString& figures) {
        return waitFor([&] {
            const QList<QLabel*> labels = window->statusBar()->findChildren<QLabel*>();
            return std::any_of(labels.begin(), labels.end(),
                [&](QLabel* label) { return label->text().startsWith(figures + u" · "_s); });
        });
    };
    const QString guid = makeNote(u"word"_s);
    EXPECT_TRUE(told(u"1 word · 0 attachments"_s));
    write(u"two words"_s);
    ASSERT_TRUE(pane->saveNote());
    EXPECT_TRUE(told(u"2 words · 0 attachments"_s));
    std::vector<NewAttachFile> files = shelf.files(guid);
    files.emplace_back().fileType = 2;
    ASSERT_TRUE(shelf.saveNote(guid, files, u"word"_s));
    Q_EMIT pane->noteSaved();
    EXPECT_TRUE(told(u"1 word · 1 attachment"_s));
}

TEST_F(MainWindowTest, AtTwiceTheScaleThePagesIconsAreDrawnInThePixelsOfTheScreen)
{
    if (window->devicePixelRatio() == 2) {
        const QRect icons(0, 36, 154, 34); // of the second row, without any text
        EXPECT_TRUE(waitFor([&] { return sharpestStep(pane->grab(icons).toImage()) > 0.7; }));
        return;
    }
    ASSERT_FALSE(qEnvironmentVariableIsSet("NOMAR_TEST_AGAIN")) << "no such scale to be had";
    // The scale is a program's own from its start.
    QProcess atTwice;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_SCALE_FACTOR"_s, u"2"_s);
    environment.insert(u"NOMAR_TEST_AGAIN"_s, u"1"_s);
    environment.remove(u"GTEST_OUTPUT"_s);
    atTwice.setProcessEnvironment(environment);
    atTwice.start(
        QCoreApplication::applicationFilePath(), {u"--gtest_filter=MainWindowTest.AtTwice*"_s});
    ASSERT_TRUE(atTwice.waitForFinished(100'000)) << qPrintable(atTwice.errorString());
    EXPECT_EQ(atTwice.exitCode(), 0) << atTwice.readAllStandardOutput().constData();
}
