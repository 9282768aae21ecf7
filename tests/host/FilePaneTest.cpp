#include "TestShelf.h"

#include "FilePane.h"
#include "Store.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>

#include <ostream>

using namespace Qt::StringLiterals;

// Readable failures.
static void PrintTo(const QStringList& list, std::ostream* out)
{
    *out << list.join(u'|').toStdString();
}

/// Stands in for the desktop that opens a folder.
class Desktop : public QObject {
    Q_OBJECT
public:
    Desktop() { QDesktopServices::setUrlHandler(u"file"_s, this, "open"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(u"file"_s); }
    Q_INVOKABLE void open(const QUrl& address) { opened = address; }

    QUrl opened;
};

class FilePaneTest : public TestShelf {
protected:
    void SetUp() override
    {
        TestShelf::SetUp();
        QObject::connect(&pane, &FilePane::openRequested,
            [this](const NewAttachFile& file) { asked += u"open "_s + file.origName; });
        QObject::connect(&pane, &FilePane::copyRequested,
            [this](const FilePane::Files& files) { asked += u"copy "_s + names(files); });
        QObject::connect(&pane, &FilePane::removeRequested,
            [this](const FilePane::Files& files) { asked += u"remove "_s + names(files); });
        QObject::connect(
            &pane, &FilePane::failed, [this](const QString& message) { failures += message; });
        pane.resize(800, 300);
        pane.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&pane));
        tree->setFocus();
    }

    static QString names(const FilePane::Files& files)
    {
        QStringList list;
        for (const NewAttachFile& file : files)
            list += file.origName;
        return list.join(u'+');
    }
    NewAttachFile attachment(const QString& name, const QByteArray& content)
    {
        NewAttachFile file = record(2, u"digest of "_s + name, put(u"g/"_s + name, content), name);
        file.modifyTime = u"2024-03-05 06:07:08"_s;
        return file;
    }
    /// A note with those attachments, each beside its shown picture.
    void file(const QStringList& names)
    {
        std::vector<NewAttachFile> files{record(0, u"n.html"_s, put(u"n.html"_s))};
        for (const QString& name : names) {
            files.push_back(attachment(name, name.toUtf8()));
            files.push_back(record(1, u"card of "_s + name, put(u"card"_s)));
        }
        ASSERT_TRUE(shelf.saveNote(u"g"_s, files, u"text"_s));
    }
    void show(bool readOnly = false) { pane.showNote(u"g"_s, readOnly); }
    QString cell(int row, int column) { return tree->topLevelItem(row)->text(column); }
    QAction* verb(const QString& text)
    {
        for (QAction* action : tree->actions())
            if (action->text() == text)
                return action;
        ADD_FAILURE() << "no action " << qPrintable(text);
        return nullptr;
    }
    void choose(int row) { tree->setCurrentItem(tree->topLevelItem(row)); }
    /// Answers the next dialog for a file's name; an empty answer cancels it.
    void answer(const QString& path)
    {
        QTimer::singleShot(0, [path] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return ADD_FAILURE() << "no dialog", void();
            if (path.isEmpty())
                return dialog->reject();
            dialog->selectFile(path);
            static_cast<QDialog*>(dialog)->done(QDialog::Accepted);
        });
    }

    FilePane pane{shelf, storeDir()};
    QTreeWidget* tree = pane.findChild<QTreeWidget*>();
    QStringList asked, failures;
};

TEST_F(FilePaneTest, ListsTheAttachmentsAndNothingElse)
{
    file({u"报告.pdf"_s, u"b.png"_s});
    show();
    ASSERT_EQ(tree->topLevelItemCount(), 2);
    EXPECT_EQ(cell(0, 0), u"报告.pdf"_s);
    EXPECT_TRUE(cell(0, 1).contains(u"PDF"_s)) << qPrintable(cell(0, 1));
    EXPECT_EQ(cell(0, 2), QLocale().formattedDataSize(10));
    EXPECT_EQ(
        cell(0, 3), QLocale().toString(QDateTime({2024, 3, 5}, {6, 7, 8}), QLocale::ShortFormat));
    EXPECT_EQ(cell(1, 0), u"b.png"_s);
}

TEST_F(FilePaneTest, ANoteWithoutAttachmentsSaysSo)
{
    show();
    auto* empty = pane.findChild<QLabel*>();
    EXPECT_TRUE(empty->isVisible());
    EXPECT_FALSE(tree->isVisible());
    file({u"a.txt"_s});
    show();
    EXPECT_FALSE(empty->isVisible());
    EXPECT_TRUE(tree->isVisible());
}

TEST_F(FilePaneTest, EnterAndADoubleClickOpen)
{
    file({u"a.txt"_s, u"b.txt"_s});
    show();
    choose(1);
    QTest::keyClick(tree, Qt::Key_Return);
    EXPECT_EQ(asked, QStringList{u"open b.txt"_s});
    const QPoint first = tree->visualItemRect(tree->topLevelItem(0)).center();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, first);
    show(); // As a save between the two clicks does it.
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, first);
    EXPECT_EQ(asked.last(), u"open a.txt"_s);
}

TEST_F(FilePaneTest, DeleteRemovesAllThatIsSelected)
{
    file({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s});
    show();
    choose(0);
    tree->topLevelItem(2)->setSelected(true);
    QTest::keyClick(tree, Qt::Key_Delete);
    EXPECT_EQ(asked, QStringList{u"remove a.txt+c.txt"_s});
    EXPECT_EQ(tree->topLevelItemCount(), 3) << "the note decides, with its next save";
}

TEST_F(FilePaneTest, TheNextRowIsCurrentWhenOneHasGone)
{
    file({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s});
    show();
    choose(1);
    file({u"a.txt"_s, u"c.txt"_s});
    show();
    ASSERT_TRUE(tree->currentItem());
    EXPECT_EQ(tree->currentItem()->text(0), u"c.txt"_s);
    EXPECT_TRUE(tree->currentItem()->isSelected());
}

TEST_F(FilePaneTest, AnotherNoteBeginsWithoutASelection)
{
    file({u"a.txt"_s});
    ASSERT_TRUE(shelf.saveNote(u"h"_s, {attachment(u"z.txt"_s, "z")}, u"text"_s));
    show();
    choose(0);
    pane.showNote(u"h"_s, false);
    EXPECT_EQ(cell(0, 0), u"z.txt"_s);
    EXPECT_TRUE(tree->selectedItems().isEmpty());
    EXPECT_FALSE(verb(u"Open"_s)->isEnabled());
    pane.showNote({}, true);
    EXPECT_EQ(tree->topLevelItemCount(), 0);
}

TEST_F(FilePaneTest, InAReadOnlyNoteNothingIsRemoved)
{
    file({u"a.txt"_s});
    show(true);
    choose(0);
    EXPECT_TRUE(verb(u"Open"_s)->isEnabled());
    EXPECT_FALSE(verb(u"Remove"_s)->isEnabled());
    QTest::keyClick(tree, Qt::Key_Delete);
    EXPECT_TRUE(asked.isEmpty());
    show(false);
    EXPECT_TRUE(verb(u"Remove"_s)->isEnabled());
}

TEST_F(FilePaneTest, WithoutASelectionNothingCanBeDone)
{
    file({u"a.txt"_s});
    show();
    for (QAction* action : tree->actions())
        EXPECT_FALSE(action->isEnabled()) << qPrintable(action->text());
    choose(0);
    for (QAction* action : tree->actions())
        EXPECT_TRUE(action->isEnabled()) << qPrintable(action->text());
}

TEST_F(FilePaneTest, CopyNamesTheSelectedFiles)
{
    file({u"a.txt"_s, u"b.txt"_s});
    show();
    tree->selectAll();
    QTest::keyClick(tree, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(asked, QStringList{u"copy a.txt+b.txt"_s});
}

TEST_F(FilePaneTest, ShowInFolderOpensTheFolderWhereNoFileManagerSelects)
{
    Desktop desktop;
    file({u"a b.txt"_s});
    show();
    choose(0);
    verb(u"Show in folder"_s)->trigger();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !desktop.opened.isEmpty(); }));
    EXPECT_EQ(desktop.opened.toLocalFile(), storeDir() + u"/g/"_s);
    ASSERT_TRUE(QFile::remove(storeDir() + u"/g/a b.txt"_s));
    verb(u"Show in folder"_s)->trigger();
    EXPECT_EQ(failures, QStringList{u"The file a b.txt cannot be opened."_s});
}

TEST_F(FilePaneTest, SaveAsCopiesTheFileOrTellsWhyNot)
{
    file({u"a.txt"_s});
    show();
    choose(0);
    const QString target = dir.filePath(u"saved.txt"_s);
    answer(target);
    verb(u"Save as"_s)->trigger();
    QFile saved(target);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), "a.txt");
    EXPECT_TRUE(failures.isEmpty());

    answer({});
    verb(u"Save as"_s)->trigger();
    EXPECT_TRUE(failures.isEmpty());

    const QString unwritable = dir.filePath(QString(300, u'x')); // too long a name
    answer(unwritable);
    verb(u"Save as"_s)->trigger();
    EXPECT_EQ(failures, QStringList{u"The file %1 cannot be written."_s.arg(unwritable)});
    failures.clear();

    ASSERT_TRUE(QFile::remove(storeDir() + u"/g/a.txt"_s));
    verb(u"Save as"_s)->trigger();
    EXPECT_EQ(failures, QStringList{u"The file a.txt cannot be opened."_s});
}

#include "FilePaneTest.moc"
