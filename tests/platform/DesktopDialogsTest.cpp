// Boxes, the file dialog and the progress of an import as users meet them, by real keys.

#include "kit/Answers.h"
#include "kit/Print.h"
#include "kit/Wait.h"

#include "platform/Boxes.h"
#include "platform/DialogParent.h"
#include "platform/FileDialog.h"
#include "platform/ImportProgress.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProgressDialog>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class FileDialogOfTheDesktop : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QStringList paths{QStringLiteral("as it was")};

    QString file(const QString& name)
    {
        QFile made(dir.filePath(name));
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        return made.fileName();
    }
    /// Types into the dialog's name field and presses a key.
    bool answer(const QString& typed, Qt::Key key)
    {
        const Answers user(Answers::choose(dir.path(), typed, key));
        return DesktopFileDialog().choose(paths);
    }
};

} // namespace

TEST_F(FileDialogOfTheDesktop, GivesSeveralFiles)
{
    const QString a = file(QStringLiteral("a b.txt")), b = file(QStringLiteral("b.txt"));
    EXPECT_TRUE(answer(QStringLiteral("\"a b.txt\" \"b.txt\""), Qt::Key_Return));
    EXPECT_EQ(paths, QStringList({a, b}));
}

TEST_F(FileDialogOfTheDesktop, EndsWithNothingOnEscape)
{
    file(QStringLiteral("a.txt"));
    EXPECT_FALSE(answer(QStringLiteral("a.txt"), Qt::Key_Escape));
}

TEST_F(FileDialogOfTheDesktop, LeavesTheWorkingDirectoryAlone)
{
    const QString before = QDir::currentPath();
    file(QStringLiteral("a.txt"));
    EXPECT_TRUE(answer(QStringLiteral("a.txt"), Qt::Key_Return));
    EXPECT_EQ(QDir::currentPath(), before);
}

TEST_F(FileDialogOfTheDesktop, MayGoWithTheWindowBelowIt)
{
    auto window = std::make_unique<QWidget>();
    window->show();
    window->activateWindow();
    ASSERT_TRUE(waitFor([&] { return QApplication::activeWindow() == window.get(); }));
    const Answers user([&](QDialog*) {
        window.reset();
        return true;
    });
    EXPECT_FALSE(DesktopFileDialog().choose(paths));
}

TEST(BoxesOfTheDesktop, ShowTheTextAndReturnWhenDismissed)
{
    const Answers user;
    DesktopBoxes().show(QStringLiteral("<b>你好</b>"));
    EXPECT_EQ(user.texts, QStringList{QStringLiteral("<b>你好</b>")});
}

TEST(DialogParentOf, AWindowOnTheScreenEvenIfAnotherProgramIsActive)
{
    QWidget hidden, window;
    window.show();
    ASSERT_TRUE(waitFor([&] { return window.isActiveWindow(); }));
    QApplication::setActiveWindow(nullptr);
    EXPECT_EQ(DialogParent(), &window);
}

TEST(ProgressOfTheDesktop, AppearsAfterAWhileAndCanBeCancelled)
{
    DesktopImportProgress progress;
    progress.begin(1000);
    EXPECT_TRUE(progress.next(QStringLiteral("first")));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);

    const auto shown = [] {
        return qobject_cast<QProgressDialog*>(QApplication::activeModalWidget());
    };
    ASSERT_TRUE(waitFor([&] {
        EXPECT_TRUE(progress.next(QStringLiteral("<i>name</i>.txt")));
        return shown() != nullptr;
    }));
    EXPECT_TRUE(shown()->labelText().contains(QStringLiteral("<i>name</i>.txt")));
    EXPECT_EQ(shown()->findChild<QLabel*>()->textFormat(), Qt::PlainText);
    QTest::keyClick(shown(), Qt::Key_Escape);
    EXPECT_FALSE(progress.next(QStringLiteral("last")));
    progress.end();
    EXPECT_EQ(shown(), nullptr);

    // The next import begins anew.
    progress.begin(2);
    EXPECT_TRUE(progress.next(QStringLiteral("first")));
    progress.end();
}

TEST(ProgressOfTheDesktop, AnInnerImportHasNoSay)
{
    DesktopImportProgress progress;
    progress.begin(2);
    progress.begin(5);
    EXPECT_TRUE(progress.next(QStringLiteral("inner")));
    progress.end();
    EXPECT_TRUE(progress.next(QStringLiteral("outer")));
    progress.end();
}
