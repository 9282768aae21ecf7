// What becomes of a selection: buttons, menu, clipboard, file, receiver.

#include "capture/CaptureKit.h"
#include "capture/IconFiles.h"

#include "capture/TrackerShared.h"
#include "kit/LogLines.h"
#include "kit/Print.h"

#include <QClipboard>
#include <QTemporaryDir>

using CaptureResult = CaptureTest;

namespace {

const QStringList menuTexts{QStringLiteral("退出"), QStringLiteral("另存为"),
    QStringLiteral("复制截图"), QStringLiteral("完成截图")};

} // namespace

TEST_F(CaptureResult, TheMenuHasFourCommandsInOrder)
{
    draw(from, to);
    const MenuUser user;
    rightClick({350, 350});
    EXPECT_EQ(user.texts, menuTexts);
}

TEST_F(CaptureResult, EachItemOfTheMenuDoesItsCommand)
{
    expectCommands({captureExit, captureSaveAs, captureCopy, captureComplete}, [this](int index) {
        const MenuUser user(menuTexts[index]);
        rightClick({350, 350});
    });
}

TEST_F(CaptureResult, NothingComesOfAMenuThatOutlastsTheCapture)
{
    draw(from, to);
    MenuUser user(menuTexts[3]);
    user.onMenu = [this] { capture.reject(); };
    rightClick({350, 350});
    EXPECT_EQ(user.menus, 1);
    EXPECT_TRUE(kept.pictures.empty());
    EXPECT_EQ(capture.cancels, 0);
}

TEST_F(CaptureResult, NothingComesOfTheClicksBehindTheOneThatEndedTheCapture)
{
    draw(from, to);
    QGuiApplication::clipboard()->clear();
    capture.OnCommand(captureComplete);
    for (const CaptureCommand late : {captureComplete, captureCopy, captureSaveAs, captureExit})
        capture.OnCommand(late);
    doubleClick({350, 350});
    EXPECT_EQ(kept.pictures.size(), 1U);
    EXPECT_EQ(saved.asked, 0);
    EXPECT_TRUE(QGuiApplication::clipboard()->image().isNull());
    EXPECT_EQ(capture.cancels, 1);
}

TEST_F(CaptureResult, MenuAndDoubleClickWorkOnASelectionAtTheBottomOfTheScreen)
{
    const int bottom = screen.height();
    const QPoint inside{350, bottom - 20};
    const auto byMenu = [&] {
        const MenuUser user(menuTexts[3]);
        rightClick(inside);
    };
    const auto byDoubleClick = [&] {
        laterRelease(inside);
        doubleClick(inside);
    };
    for (const std::function<void()>& complete :
        std::initializer_list<std::function<void()>>{byMenu, byDoubleClick}) {
        kept.pictures.clear();
        reopen();
        draw({300, bottom - 100}, {400, bottom});
        EXPECT_GE(capture.toolbarRect().top(), bottom);
        complete();
        ASSERT_EQ(kept.pictures.size(), 1U);
        EXPECT_EQ(kept.pictures[0], screen.copy(304, bottom - 96, 96, 96));
    }
}

TEST_F(CaptureResult, CommandsOfNoMeaningDoNothing)
{
    draw(from, to);
    for (const int id : {int(captureNothing), 1000, 1006, 0, -1})
        capture.OnCommand(id);
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(kept.pictures.empty());
    EXPECT_EQ(saved.asked, 0);
}

TEST_F(CaptureResult, TheReceiverIsCalledWhileTheDialogIsStillOnTheScreen)
{
    draw(from, to);
    bool wasOpen = false;
    kept.onPicture = [&] { wasOpen = isOpen(); };
    capture.OnCommand(captureComplete);
    EXPECT_TRUE(wasOpen);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(capture.result(), QDialog::Rejected);
}

TEST_F(CaptureResult, WithoutAReceiverACaptureGoesNowhere)
{
    capture.notify = nullptr;
    draw(from, to);
    capture.OnCommand(captureComplete);
    EXPECT_FALSE(isOpen());
}

TEST_F(CaptureResult, ADragToTheUpperLeftGivesTheSamePixels)
{
    draw({404, 384}, {300, 300});
    EXPECT_EQ(capture.Selection(), (CaptureRect{408, 388, 300, 300}));
    capture.OnCommand(captureComplete);
    ASSERT_EQ(kept.pictures.size(), 1U);
    EXPECT_EQ(kept.pictures[0], screen.copy(300, 300, 108, 88));
}

TEST_F(CaptureResult, ASelectionPartlyOffTheScreenIsCutToIt)
{
    draw(from, to);
    laterMove({20, 20});
    laterRelease({20, 20});
    press({350, 350});
    EXPECT_EQ(capture.Selection(), (CaptureRect{-26, -26, 74, 54}));
    capture.OnCommand(captureComplete);
    ASSERT_EQ(kept.pictures.size(), 1U);
    EXPECT_EQ(kept.pictures[0], screen.copy(0, 0, 74, 54));
}

TEST_F(CaptureResult, ASelectionWhollyOffTheScreenGivesANullPicture)
{
    draw(from, to);
    laterMove({350, 1350});
    laterRelease({350, 1350});
    press({350, 350});
    capture.OnCommand(captureComplete);
    ASSERT_EQ(kept.pictures.size(), 1U);
    EXPECT_TRUE(kept.pictures[0].isNull());
}

TEST_F(CaptureResult, ACopyLiesOnTheClipboardAndEndsTheDialog)
{
    draw(from, to);
    capture.OnCommand(captureCopy);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(kept.pictures.empty());
    EXPECT_EQ(QGuiApplication::clipboard()->image(), screen.copy(304, 304, 100, 80));
}

TEST_F(CaptureResult, ACopyOfAnEmptySelectionLeavesNothingOnTheClipboard)
{
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    draw(from, {304, 304});
    capture.OnCommand(captureCopy);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(QGuiApplication::clipboard()->image().isNull());
    EXPECT_TRUE(QGuiApplication::clipboard()->text().isEmpty());
}

TEST_F(CaptureResult, ASavedFileHasTheSelectedPixels)
{
    const QTemporaryDir dir;
    saved.answer = dir.filePath(QStringLiteral("截图.png"));
    saved.onAsk = [this] { EXPECT_TRUE(isOpen()); };
    draw(from, to);
    capture.OnCommand(captureSaveAs);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(kept.pictures.empty());
    EXPECT_EQ(
        QImage(saved.answer).convertToFormat(QImage::Format_RGB32), screen.copy(304, 304, 100, 80));
}

TEST_F(CaptureResult, ACancelledSaveLeavesTheDialogAsItWas)
{
    draw(from, to);
    capture.OnCommand(captureSaveAs);
    EXPECT_EQ(saved.asked, 1);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(capture.Selection(), selected);
    EXPECT_TRUE(isToolbarShown());
}

TEST_F(CaptureResult, ASaveThatFailsEndsTheDialogWithoutATrace)
{
    const QTemporaryDir dir;
    LogLines log;
    for (const QString& path :
        {dir.filePath(QStringLiteral("a.unknown")), dir.filePath(QStringLiteral("none")),
            dir.filePath(QStringLiteral("no/such/folder.png"))}) {
        reopen();
        saved.answer = path;
        draw(from, to);
        capture.OnCommand(captureSaveAs);
        EXPECT_FALSE(isOpen());
        EXPECT_FALSE(QFile::exists(path));
    }
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(CaptureResult, NothingIsSavedWhenTheCaptureEndedUnderTheSaveDialog)
{
    const QTemporaryDir dir;
    saved.answer = dir.filePath(QStringLiteral("late.png"));
    saved.onAsk = [this] { capture.reject(); };
    draw(from, to);
    capture.OnCommand(captureSaveAs);
    EXPECT_FALSE(QFile::exists(saved.answer));
    EXPECT_EQ(capture.cancels, 0);
}

TEST_F(CaptureResult, AnEmptySelectionSavesNothing)
{
    const QTemporaryDir dir;
    saved.answer = dir.filePath(QStringLiteral("empty.png"));
    draw(from, {304, 304});
    capture.OnCommand(captureSaveAs);
    EXPECT_FALSE(isOpen());
    EXPECT_FALSE(QFile::exists(saved.answer));
}

namespace {

const QStringList cursorFiles{QStringLiteral("size2_r.cur"), QStringLiteral("size1_r.cur"),
    QStringLiteral("size4_r.cur"), QStringLiteral("size3_r.cur"), QStringLiteral("move_r.cur"),
    QStringLiteral("arrow_m.cur")};

/// Files whose hot spot tells them apart, and the shared cursors put back at the end.
class CaptureFiles : public ::testing::Test {
protected:
    ~CaptureFiles() override { TrackerShared::Get().cursors = m_old; }

    void putCursors(const QString& without = {})
    {
        for (int i = 0; i < cursorFiles.size(); ++i) {
            if (cursorFiles[i] != without)
                res.put(
                    cursorFiles[i], iconFileOf(2, {{pngOf(coloured(32, Qt::red)), 32, i + 1, 0}}));
        }
    }
    static std::vector<int> hotSpots()
    {
        std::vector<int> spots;
        for (const QCursor& cursor : TrackerShared::Get().cursors)
            spots.push_back(cursor.hotSpot().x());
        return spots;
    }

    OwnRes res;
    OpenCapture capture{patternedScreen()};

private:
    std::array<QCursor, 10> m_old = TrackerShared::Get().cursors;
};

} // namespace

TEST_F(CaptureFiles, OfCursorsReplaceThoseOfTheTracker)
{
    putCursors();
    const int gap = hotSpots().back();
    ASSERT_TRUE(capture.Create(nullptr));
    EXPECT_EQ(hotSpots(), (std::vector<int>{1, 2, 1, 2, 3, 4, 3, 4, 5, gap}));
    EXPECT_EQ(capture.cursor().hotSpot().x(), 6);
    EXPECT_EQ(capture.tip().cursor().hotSpot().x(), 6);
}

TEST_F(CaptureFiles, OneMissingCursorOfTheTrackerLeavesAllOfThem)
{
    const std::vector<int> before = hotSpots();
    for (int i = 0; i < 5; ++i) {
        OwnRes own;
        for (int j = 0; j < 5; ++j) {
            if (j != i)
                own.put(cursorFiles[j], iconFileOf(2, {{pngOf(coloured(32, Qt::red)), 32, 1, 0}}));
        }
        ASSERT_TRUE(capture.Create(nullptr));
        EXPECT_EQ(hotSpots(), before) << i;
        capture.reject();
    }
}

TEST_F(CaptureFiles, AMissingDefaultCursorIsTheDesktops)
{
    putCursors(cursorFiles.last());
    ASSERT_TRUE(capture.Create(nullptr));
    EXPECT_EQ(hotSpots().front(), 1);
    EXPECT_EQ(capture.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(CaptureFiles, WithoutIconsTheButtonsAreBlankButThere)
{
    ASSERT_TRUE(capture.Create(nullptr));
    const auto buttons = capture.findChildren<QAbstractButton*>();
    ASSERT_EQ(buttons.size(), 4);
    for (QAbstractButton* button : buttons) {
        button->resize(18, 18);
        const QImage shown = button->grab().toImage();
        EXPECT_EQ(shown.pixelColor(9, 9), QColor(216, 241, 255));
    }
}

TEST_F(CaptureFiles, OfIconsStandOnTheButtonsInOrder)
{
    const QColor colours[] = {Qt::red, Qt::green, Qt::blue, Qt::black};
    const QString names[] = {QStringLiteral("copy.ico"), QStringLiteral("saveas.ico"),
        QStringLiteral("exit.ico"), QStringLiteral("complete.ico")};
    for (int i = 0; i < 4; ++i)
        res.put(names[i], iconFileOf(1, {{pngOf(coloured(16, colours[i])), 16, 1, 32}}));
    ASSERT_TRUE(capture.Create(nullptr));
    const auto buttons = capture.findChildren<QAbstractButton*>();
    ASSERT_EQ(buttons.size(), 4);
    for (int i = 0; i < 4; ++i) {
        buttons[i]->resize(18, 18);
        EXPECT_EQ(buttons[i]->grab().toImage().pixelColor(9, 9), colours[i]) << i;
    }
}
