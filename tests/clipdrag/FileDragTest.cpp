#include "clipdrag/FileDrag.h"

#include "kit/AddingFixture.h"
#include "kit/Wait.h"

#include "platform/BrowserNotify.h"
#include "platform/HoverFrame.h"

#include <QImage>
#include <QMimeData>
#include <QRegularExpression>
#include <QUrl>

namespace {

/// The browser's own drop target: writes down what it gets and gives an odd result.
class Browser : public DropTarget {
public:
    static constexpr long result = 17;
    QStringList events;
    DragOrigin origin = DragOrigin::OtherProcess;

    DragOrigin Origin() const override { return origin; }
    long DragEnter(const QMimeData*, unsigned, QPoint, int*) override { return take("enter"); }
    long DragOver(unsigned, QPoint, int*) override { return take("over"); }
    long DragLeave() override { return take("leave"); }
    long Drop(const QMimeData*, unsigned, QPoint, int*) override { return take("drop"); }

private:
    long take(const char* event)
    {
        events << QString::fromLatin1(event);
        return result;
    }
};

/// Writes down what would be shown.
class RecordedHelper : public DropTargetHelper {
public:
    QStringList shown;

    void DragEnter(QWidget* window, DragFate fate) override
    {
        shown << (window ? QStringLiteral("enter ") : QStringLiteral("nowhere ")) + name(fate);
    }
    void DragOver(DragFate fate) override { shown << QStringLiteral("over ") + name(fate); }
    void DragLeave() override { shown << QStringLiteral("leave"); }
    void Drop() override { shown << QStringLiteral("drop"); }

private:
    static QString name(DragFate fate)
    {
        static const char* const names[] = {"taken", "refused", "read-only"};
        return QString::fromLatin1(names[int(fate)]);
    }
};

/// Data that counts how often it is read.
class CountedData : public QMimeData {
public:
    mutable int reads = 0;

protected:
    QVariant retrieveData(const QString& type, QMetaType meta) const override
    {
        ++reads;
        return QMimeData::retrieveData(type, meta);
    }
};

class Drag : public Adding {
protected:
    DragState state;
    Browser browser;
    RecordedHelper helper;
    FileDrag drag{state, note, page, &helper};
    QMimeData data;
    int effect = Qt::CopyAction;

    void SetUp() override { page.html = QStringLiteral("<p>x</p>"); }

    void offer(const QStringList& paths)
    {
        QList<QUrl> urls;
        for (const QString& path : paths)
            urls << QUrl::fromLocalFile(path);
        data.setUrls(urls);
    }
    void offerFile() { offer({file(QStringLiteral("a.txt"))}); }
    long enter(int offered = Qt::CopyAction)
    {
        effect = offered;
        return drag.OnDragEnter(&data, 0, {}, &effect, &browser);
    }
    long over(int offered = Qt::CopyAction)
    {
        effect = offered;
        return drag.OnDragOver(0, {}, &effect, &browser);
    }
    long leave() { return drag.OnDragLeave(&browser); }
    long drop(int offered = Qt::CopyAction)
    {
        effect = offered;
        return drag.OnDrop(&data, 0, {}, &effect, &browser, *adder);
    }
};

} // namespace

TEST_F(Drag, OfTextIsTheBrowsersInEveryEvent)
{
    data.setText(QStringLiteral("text"));
    data.setHtml(QStringLiteral("<b>text</b>"));
    EXPECT_EQ(enter(), Browser::result);
    EXPECT_EQ(over(), Browser::result);
    EXPECT_EQ(leave(), Browser::result);
    EXPECT_EQ(drop(), Browser::result);
    EXPECT_EQ(browser.events,
        QStringList({QStringLiteral("enter"), QStringLiteral("over"), QStringLiteral("leave"),
            QStringLiteral("drop")}));
    EXPECT_EQ(state.m_dragOpType, DRAGE_OP_DEFAULT);
    EXPECT_TRUE(helper.shown.isEmpty());
    EXPECT_TRUE(added().isEmpty());
}

TEST_F(Drag, OfFilesNeverReachesTheBrowser)
{
    offerFile();
    EXPECT_EQ(enter(), S_OK);
    EXPECT_EQ(over(), S_OK);
    EXPECT_EQ(drop(), S_OK);
    EXPECT_TRUE(browser.events.isEmpty());
    EXPECT_EQ(state.m_dragOpType, DRAGE_OP_FILE);
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
    EXPECT_EQ(helper.shown,
        QStringList(
            {QStringLiteral("enter taken"), QStringLiteral("over taken"), QStringLiteral("drop")}));
}

TEST_F(Drag, OfTooManyFilesIsRefusedThroughoutAndNotShownToTheBrowser)
{
    offerFile();
    enter();
    leave();
    helper.shown.clear();
    const QByteArray line = QUrl::fromLocalFile(file(QStringLiteral("b.txt"))).toEncoded() + "\r\n";
    data.setData(QStringLiteral("text/uri-list"), line.repeated(1001));
    EXPECT_EQ(enter(), S_FALSE);
    EXPECT_EQ(helper.shown, QStringList{QStringLiteral("enter refused")});
    drop();
    EXPECT_TRUE(added().isEmpty());
    EXPECT_TRUE(state.m_dropFileList.empty());
    EXPECT_FALSE(browser.events.contains(QStringLiteral("enter")));
    data.clear();
    offerFile();
    EXPECT_EQ(enter(), S_OK);
}

TEST_F(Drag, ThatLeavesKeepsItsListUntilTheNextEnters)
{
    offerFile();
    enter();
    EXPECT_EQ(leave(), S_OK);
    EXPECT_EQ(helper.shown.last(), QStringLiteral("leave"));
    EXPECT_EQ(state.m_dropFileList.size(), 1u);
    data.clear();
    data.setText(QStringLiteral("text"));
    enter();
    EXPECT_TRUE(state.m_dropFileList.empty());
    EXPECT_EQ(state.m_dragOpType, DRAGE_OP_DEFAULT);
}

TEST_F(Drag, OverAReadOnlyNoteIsRefusedAndTheOldKindStaysInForce)
{
    offerFile();
    enter();
    leave();
    note.m_readOnly = 1;
    helper.shown.clear();
    data.clear();
    data.setText(QStringLiteral("text"));
    EXPECT_EQ(enter(), S_FALSE);
    EXPECT_EQ(state.m_dragOpType, DRAGE_OP_FILE);
    EXPECT_EQ(state.m_dropFileList.size(), 1u);
    EXPECT_EQ(over(), S_OK);
    EXPECT_EQ(effect, Qt::IgnoreAction);
    EXPECT_EQ(drop(), S_OK);
    EXPECT_EQ(effect, Qt::IgnoreAction);
    EXPECT_TRUE(added().isEmpty());
    EXPECT_TRUE(boxes.texts.isEmpty());
    EXPECT_TRUE(browser.events.isEmpty());
    EXPECT_EQ(helper.shown.first(), QStringLiteral("enter read-only"));
    EXPECT_EQ(helper.shown[1], QStringLiteral("over read-only"));
    EXPECT_TRUE(helper.shown.contains(QStringLiteral("leave")));
}

TEST_F(Drag, OverAReadOnlyNoteAfterATextDragIsTheBrowsers)
{
    data.setText(QStringLiteral("text"));
    enter();
    leave();
    note.m_readOnly = 1;
    offerFile();
    EXPECT_EQ(enter(), S_FALSE);
    EXPECT_EQ(over(), Browser::result);
    EXPECT_EQ(leave(), Browser::result);
    EXPECT_EQ(
        helper.shown, QStringList({QStringLiteral("enter read-only"), QStringLiteral("leave")}));
}

TEST_F(Drag, OverAReadOnlyNoteIsNotLookedAt)
{
    note.m_readOnly = 1;
    CountedData counted;
    counted.setUrls({QUrl::fromLocalFile(file(QStringLiteral("a.txt")))});
    EXPECT_EQ(drag.OnDragEnter(&counted, 0, {}, &effect, &browser), S_FALSE);
    EXPECT_EQ(counted.reads, 0);
}

TEST_F(Drag, WithoutAnEnterIsRefused)
{
    offerFile();
    EXPECT_EQ(over(), S_FALSE);
    EXPECT_EQ(leave(), S_FALSE);
    EXPECT_EQ(drop(), S_FALSE);
    EXPECT_TRUE(browser.events.isEmpty());
    EXPECT_TRUE(added().isEmpty());
}

TEST_F(Drag, IntoAReadOnlyNoteAsTheFirstOneIsRefusedThroughout)
{
    note.m_readOnly = 1;
    offerFile();
    EXPECT_EQ(enter(), S_FALSE);
    EXPECT_EQ(over(), S_FALSE);
    EXPECT_EQ(drop(), S_FALSE);
    EXPECT_EQ(
        helper.shown, QStringList({QStringLiteral("enter read-only"), QStringLiteral("leave")}));
}

TEST_F(Drag, OfOneUnreadableFileIsTheBrowsers)
{
    offer({QStringLiteral("/nowhere/at/all")});
    EXPECT_EQ(enter(), Browser::result);
    EXPECT_TRUE(state.m_dropFileList.empty());
    EXPECT_EQ(state.m_dragOpType, DRAGE_OP_DEFAULT);
    EXPECT_EQ(drop(), Browser::result);
    EXPECT_EQ(boxes.texts, QStringList());
    EXPECT_EQ(log.take(), QStringList());
}

TEST_F(Drag, OfAFolderIsTakenAndRefusedAloud)
{
    offer({dir.path()});
    EXPECT_EQ(enter(), S_OK);
    EXPECT_EQ(state.m_dropFileList.size(), 1u);
    EXPECT_EQ(drop(), S_OK);
    EXPECT_EQ(boxes.texts, QStringList{QStringLiteral("暂不支持文件夹粘贴！")});
    EXPECT_TRUE(added().isEmpty());
}

TEST_F(Drag, OfFilesAndAnImageTakesTheFilesOnly)
{
    offerFile();
    data.setImageData(QImage(4, 4, QImage::Format_RGB32));
    enter();
    drop();
    EXPECT_EQ(added(), QStringList{QStringLiteral("a.txt")});
}

TEST_F(Drag, OfAnImageNamesItByDigits)
{
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    data.setImageData(image);
    EXPECT_EQ(enter(), S_OK);
    drop();
    ASSERT_EQ(added().size(), 1);
    EXPECT_TRUE(
        QRegularExpression(QStringLiteral("^[0-9a-f]{32}\\.jpg$")).match(added()[0]).hasMatch());
}

TEST_F(Drag, OfAnImageThatOnlyPassesLeavesItsTemporaryFile)
{
    data.setImageData(QImage(4, 4, QImage::Format_RGB32));
    enter();
    const QString path = state.m_dropFileList.at(0).filePath;
    leave();
    data.clear();
    data.setText(QStringLiteral("text"));
    enter();
    EXPECT_TRUE(QFile::exists(path));
}

TEST_F(Drag, OfAnImageThatIsDroppedLeavesItsTemporaryFile)
{
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    data.setImageData(image);
    enter();
    const QString path = state.m_dropFileList.at(0).filePath;
    drop();
    EXPECT_EQ(added().size(), 1);
    EXPECT_TRUE(QFile::exists(path));
}

TEST_F(Drag, OfBrokenImageBytesIsTheBrowsers)
{
    data.setData(QStringLiteral("image/png"), "no image");
    EXPECT_EQ(enter(), Browser::result);
}

TEST_F(Drag, OfThePagesOwnIsTheBrowsersWhateverItCarries)
{
    browser.origin = DragOrigin::ThisBrowser;
    offerFile();
    EXPECT_EQ(enter(), Browser::result);
    EXPECT_EQ(drop(), Browser::result);
    EXPECT_TRUE(state.m_dropFileList.empty());
}

TEST_F(Drag, OfThePagesOwnShowsNothingInAReadOnlyNote)
{
    browser.origin = DragOrigin::ThisBrowser;
    note.m_readOnly = 1;
    EXPECT_EQ(enter(), S_FALSE);
    leave();
    EXPECT_FALSE(helper.shown.contains(QStringLiteral("enter read-only")));
}

TEST_F(Drag, FromThisProcessIsSeenToRightAfterTheDrop)
{
    browser.origin = DragOrigin::ThisProcess;
    offerFile();
    enter();
    EXPECT_EQ(drop(), S_OK);
    EXPECT_EQ(effect, Qt::CopyAction);
    EXPECT_TRUE(added().isEmpty());
    EXPECT_TRUE(waitFor([&] { return !added().isEmpty(); }));
}

TEST_F(Drag, FromThisProcessIsForgottenWithItsNote)
{
    browser.origin = DragOrigin::ThisProcess;
    offerFile();
    enter();
    drop();
    note.m_curNoteGuid = QStringLiteral("another");
    bool later = false;
    QTimer::singleShot(2, [&] { later = true; });
    EXPECT_TRUE(waitFor([&] { return later; }));
    EXPECT_TRUE(page.order.isEmpty());
}

TEST_F(Drag, WithoutAHelperStillAddsTheFiles)
{
    FileDrag plain(state, note, page, nullptr);
    offerFile();
    EXPECT_EQ(plain.OnDragEnter(&data, 0, {}, &effect, &browser), S_OK);
    EXPECT_EQ(plain.OnDragOver(0, {}, &effect, &browser), S_OK);
    EXPECT_EQ(plain.OnDrop(&data, 0, {}, &effect, &browser, *adder), S_OK);
    EXPECT_EQ(added().size(), 1);
}

TEST_F(Drag, WithoutABrowserRefusesWhatIsNotFiles)
{
    data.setText(QStringLiteral("text"));
    EXPECT_EQ(drag.OnDragEnter(&data, 0, {}, &effect, nullptr), S_FALSE);
    EXPECT_EQ(drag.OnDragOver(0, {}, &effect, nullptr), S_FALSE);
    EXPECT_EQ(drag.OnDragLeave(nullptr), S_FALSE);
    EXPECT_EQ(drag.OnDrop(&data, 0, {}, &effect, nullptr, *adder), S_FALSE);
}

TEST_F(Drag, IsTakenAsACopyAndNeverMoved)
{
    offerFile();
    const std::pair<int, int> cases[] = {{Qt::CopyAction, Qt::CopyAction},
        {Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction},
        {Qt::MoveAction | Qt::LinkAction, Qt::LinkAction}, {Qt::MoveAction, Qt::IgnoreAction}};
    for (const auto& [offered, taken] : cases) {
        enter(offered);
        EXPECT_EQ(effect, taken);
        over(offered);
        EXPECT_EQ(effect, taken);
        drop(offered);
        EXPECT_EQ(effect, taken);
    }
    enter(Qt::MoveAction);
    EXPECT_EQ(helper.shown.last(), QStringLiteral("enter refused"));
}

TEST_F(Drag, IsReadWhenItEntersAndNotAgain)
{
    CountedData counted;
    counted.setUrls({QUrl::fromLocalFile(file(QStringLiteral("a.txt")))});
    drag.OnDragEnter(&counted, 0, {}, &effect, &browser);
    const int reads = counted.reads;
    EXPECT_GT(reads, 0);
    for (int i = 0; i < 10; ++i)
        over();
    drag.OnDrop(&counted, 0, {}, &effect, &browser, *adder);
    EXPECT_EQ(counted.reads, reads);
}

TEST_F(Drag, GivesThePageTheFocusWithItsDrop)
{
    QWidget host;
    page.browser.setParent(&host);
    offerFile();
    enter();
    EXPECT_NE(host.focusWidget(), &page.browser);
    drop();
    EXPECT_EQ(host.focusWidget(), &page.browser);
    page.browser.setParent(nullptr);
}

TEST_F(Drag, ThatEntersDuringADropLeavesTheDropsFilesAlone)
{
    offer({file(QStringLiteral("a.txt")), file(QStringLiteral("b.txt"))});
    enter();
    page.onCall = [&] { state = {DRAGE_OP_DEFAULT, {}}; };
    drop();
    EXPECT_EQ(added(), QStringList({QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
}
