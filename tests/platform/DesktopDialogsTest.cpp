// Boxes, the file dialog and the progress of an import as users meet them, by real keys.

#include "kit/Answers.h"
#include "kit/Print.h"
#include "kit/Wait.h"

#include "platform/Boxes.h"
#include "platform/DialogParent.h"
#include "platform/FileDialog.h"
#include "platform/ImportProgress.h"
#include "platform/MessageBox.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <sys/mman.h>

namespace {

/// A progress in memory that faults at any touch once the progress is gone.
class GuardedProgress {
public:
    GuardedProgress()
        : m_page(::mmap(nullptr, sizeof(DesktopImportProgress), PROT_READ | PROT_WRITE,
            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
        , m_progress(new (m_page) DesktopImportProgress)
    {
    }
    ~GuardedProgress() { ::munmap(m_page, sizeof(DesktopImportProgress)); }
    GuardedProgress(const GuardedProgress&) = delete;
    GuardedProgress& operator=(const GuardedProgress&) = delete;

    DesktopImportProgress* operator->() const { return m_progress; }
    void end()
    {
        m_progress->~DesktopImportProgress();
        EXPECT_EQ(::mprotect(m_page, sizeof(DesktopImportProgress), PROT_NONE), 0);
    }

private:
    void* const m_page;
    DesktopImportProgress* const m_progress;
};

QProgressDialog* shownProgress()
{
    return qobject_cast<QProgressDialog*>(QApplication::activeModalWidget());
}

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

TEST(BoxesOfTheDesktop, MayGoWithTheWindowBelowThem)
{
    auto window = std::make_unique<QWidget>();
    window->show();
    window->activateWindow();
    ASSERT_TRUE(waitFor([&] { return QApplication::activeWindow() == window.get(); }));
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            window.reset();
    });
    timer.start(5);
    EXPECT_EQ(BCGPMessageBox(QStringLiteral("text")), 0);
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
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

    int begun = 1;
    ASSERT_TRUE(waitFor([&] {
        EXPECT_TRUE(progress.next(QStringLiteral("<i>name</i>.txt")));
        ++begun;
        return shownProgress() != nullptr;
    }));
    EXPECT_TRUE(shownProgress()->labelText().contains(QStringLiteral("<i>name</i>.txt")));
    EXPECT_EQ(shownProgress()->findChild<QLabel*>()->textFormat(), Qt::PlainText);
    EXPECT_EQ(shownProgress()->maximum(), 1000);
    EXPECT_EQ(shownProgress()->value(), begun - 1);
    QTest::keyClick(shownProgress(), Qt::Key_Escape);
    EXPECT_FALSE(progress.next(QStringLiteral("last")));
    progress.end();
    EXPECT_EQ(shownProgress(), nullptr);

    // The next import begins anew.
    progress.begin(2);
    EXPECT_TRUE(progress.next(QStringLiteral("first")));
    progress.end();
}

TEST(ProgressOfTheDesktop, MayGoWithItsNoteUnderAnyOfItsSteps)
{
    GuardedProgress progress;
    progress->begin(1'000'000);
    // Well after the dialog has come up, when Qt would have shown it by its own reckoning too.
    QElapsedTimer shown;
    ASSERT_TRUE(waitFor([&] {
        EXPECT_TRUE(progress->next(QStringLiteral("name")));
        if (shownProgress() && !shown.isValid())
            shown.start();
        return shown.isValid() && shown.hasExpired(200);
    }));
    QMetaObject::invokeMethod(
        qApp, [&] { progress.end(); }, Qt::QueuedConnection);
    EXPECT_FALSE(progress->next(QStringLiteral("late")));
    EXPECT_EQ(shownProgress(), nullptr);
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
