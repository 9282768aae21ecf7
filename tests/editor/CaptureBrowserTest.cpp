// Screen captures that become attachments in the page that users see.

#include "kit/Answers.h"
#include "kit/LogLines.h"
#include "kit/Print.h"
#include "kit/TestControl.h"

#include "capture/ScreenCaptureDlgBase.h"
#include "noteattach/ExData.h"
#include "support/Paths.h"

#include <gtest/gtest.h>

namespace {

class CapturingIntoANote : public ::testing::Test {
protected:
    Bench bench;
    QString guid;
    LogLines log;

    void SetUp() override
    {
        ASSERT_TRUE(bench.waitReady());
        control().NewEditor(guid, 0);
        ASSERT_TRUE(waitFor([&] { return bench.inNote(QStringLiteral("!!doc.body")).toBool(); }));
    }
    TestControl& control() { return *bench.control; }

    /// The page's call, as its button makes it.
    void press(bool hideWindow)
    {
        bench.page()->runJavaScript(
            QStringLiteral("CppProcessor('SreenCapture', '{\"hideMainWnd\":%1}', ''); 1")
                .arg(hideWindow ? QStringLiteral("true") : QStringLiteral("false")));
    }
    /// Makes a capture that goes as `act` does with the dialog, and waits for its end.
    void capture(const std::function<void(QDialog*)>& act, bool hideWindow = false)
    {
        bool ended = false;
        const Answers user([&](QDialog* dialog) {
            EXPECT_TRUE(dynamic_cast<ScreenCaptureDlgBase*>(dialog));
            act(dialog);
            return ended = true;
        });
        press(hideWindow);
        EXPECT_TRUE(waitFor([&] { return ended && !QApplication::activeModalWidget(); }));
        EXPECT_TRUE(user.texts.isEmpty());
    }
    /// A rectangle of 100 by 60.
    static void select(QDialog* dialog)
    {
        QTest::mousePress(dialog, Qt::LeftButton, {}, QPoint(300, 300));
        QTest::mouseMove(dialog, QPoint(404, 364));
        QTest::mouseRelease(dialog, Qt::LeftButton, {}, QPoint(404, 364));
    }
    static void complete(QDialog* dialog)
    {
        QTest::mouseDClick(dialog, Qt::LeftButton, {}, QPoint(350, 330));
    }
    static void selectAndComplete(QDialog* dialog)
    {
        select(dialog);
        complete(dialog);
    }
    int pictures() { return bench.inNote(QStringLiteral("doc.images.length")).toInt(); }
    /// The original name of the first.
    QString attachment()
    {
        return noteattach::GetOrigNameFromJson(
            bench.inNote(QStringLiteral("doc.images[0].getAttribute('nm_exdata')")).toString());
    }
    bool isShown()
    {
        return bench
            .inNote(QStringLiteral("[...doc.images].some(i => i.complete && i.naturalWidth === 100"
                                   " && i.naturalHeight === 60)"))
            .toBool();
    }
};

} // namespace

TEST_F(CapturingIntoANote, TheSelectionStandsInTheNoteAsAnAttachment)
{
    capture([&](QDialog* dialog) {
        EXPECT_TRUE(bench.window.isVisible());
        selectAndComplete(dialog);
    });
    EXPECT_TRUE(waitFor([&] { return isShown(); }));
    EXPECT_EQ(pictures(), 1);
    EXPECT_TRUE(attachment().endsWith(QStringLiteral(".jpg"))) << qPrintable(attachment());
    const QImage kept(GetAttachFilePath(guid, QStringLiteral("x"), attachment()));
    EXPECT_EQ(kept.size(), QSize(100, 60));
    EXPECT_TRUE(log.take().isEmpty());

    control().SaveEditor();
    ASSERT_FALSE(bench.host.saves.empty());
    EXPECT_GE(bench.host.saves.back().files.size(), 2u);
}

TEST_F(CapturingIntoANote, TheWindowStepsAsideAndIsBackWithThePictureInIt)
{
    capture(
        [&](QDialog* dialog) {
            EXPECT_FALSE(bench.window.isVisible());
            selectAndComplete(dialog);
        },
        true);
    EXPECT_TRUE(waitFor([&] { return bench.window.isVisible() && isShown(); }));
}

TEST_F(CapturingIntoANote, AnEmptySelectionAndCancelChangeNothing)
{
    capture([](QDialog* dialog) {
        select(dialog);
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    // What the dialog delivers for an empty selection.
    control().Handler().OnScreenCaptureComplet(QImage());
    EXPECT_EQ(pictures(), 0);
    EXPECT_TRUE(log.take().isEmpty());
}

TEST_F(CapturingIntoANote, PressedTwiceTheCaptureRunsOnce)
{
    press(true);
    capture(selectAndComplete);
    EXPECT_TRUE(waitFor([&] { return isShown(); }));
    EXPECT_TRUE(bench.window.isVisible());
    EXPECT_EQ(pictures(), 1);
}

TEST_F(CapturingIntoANote, ThePictureIsNotForANoteThatWasOpenedMeanwhile)
{
    capture([&](QDialog* dialog) {
        select(dialog);
        control().NewEditor(guid, 0);
        complete(dialog);
    });
    EXPECT_EQ(pictures(), 0);
}

TEST_F(CapturingIntoANote, AReadOnlyNoteTakesNone)
{
    control().SetReadOnly(1);
    capture(selectAndComplete);
    EXPECT_EQ(pictures(), 0);
}

TEST_F(CapturingIntoANote, TheControlMayGoMeanwhile)
{
    capture(
        [&](QDialog* dialog) {
            select(dialog);
            delete bench.control;
            complete(dialog);
        },
        true);
    EXPECT_TRUE(bench.window.isVisible());
}
