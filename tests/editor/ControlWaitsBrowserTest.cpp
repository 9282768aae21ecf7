// What the host does while the control waits for its page: timers and queued calls run in there.

#include "editor/ControlFixture.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImage>
#include <QTimer>

#include <algorithm>

namespace {

class ControlWaits : public Control {
public:
    /// Runs as soon as the control waits for the page.
    template <typename Act> void meanwhile(Act act) { QTimer::singleShot(0, bench->control, act); }
    QString inPage() { return bench->js(QStringLiteral("html")).toString(); }
    QString load(const QString& guid, const QString& html, int readOnly)
    {
        const QString file = stored(html, NOTE_HTML_VER_2);
        control().LoadEditor(guid, {file}, {}, readOnly);
        return file;
    }
};

const QString first = QStringLiteral("<p>first</p>");
const QString second = QStringLiteral("<p>second</p>");

} // namespace

TEST_F(ControlWaits, ANoteOpenedWhileAnotherIsBeingOpenedIsTheOneThatStands)
{
    for (const int mode : {0, 1}) {
        SCOPED_TRACE(mode);
        start();
        newNote(1 - mode); // Another mode, so that the page is asked before the text goes out.
        bool opened = false;
        meanwhile([&] {
            load(QStringLiteral("two"), second, 1 - mode);
            opened = true;
        });
        load(QStringLiteral("one"), first, mode);
        ASSERT_TRUE(opened);
        EXPECT_EQ(control().Handler().GetCurNoteGuid(), QStringLiteral("two"));
        EXPECT_EQ(control().lastHtml(), second);
        EXPECT_EQ(inPage(), second);
        EXPECT_EQ(control().Handler().IsReadOnly(), 1 - mode);
        EXPECT_EQ(calls(QStringLiteral("SetEditorMode")).last().contains(u"true"), mode == 0);
        control().SetReadOnly(0);
        loseFocus();
        EXPECT_TRUE(host().saves.empty());
    }
}

TEST_F(ControlWaits, TheSizesOfANoteThatGaveWayStayOutOfTheBook)
{
    start();
    newNote(0);
    const QString attachment =
        QStringLiteral("<img nm_exdata='%1' class=\"userdata\\attachment\\b.pdf\" "
                       "src=\"../userdata\\attachment\\c.bmp\">")
            .arg(NmWebNoteHandler::FormatOrigNameToJson(QStringLiteral("b.pdf")));
    const QString name = stored(attachment, NOTE_HTML_VER_2);
    meanwhile([&] {
        control().LoadEditor(QStringLiteral("two"), {name}, {{QStringLiteral("b.pdf"), 2}}, 0);
    });
    control().LoadEditor(QStringLiteral("one"), {}, {{QStringLiteral("c.bmp"), 2}}, 1);
    EXPECT_EQ(control().Handler().GetCurNoteGuid(), QStringLiteral("two"));
    quint64 total = 0;
    EXPECT_EQ(control().Handler().GetExistAttTotalSize(total), 0);
}

TEST_F(ControlWaits, ASaveWhileANoteIsBeingOpenedDoesNotFileTheOldTextAsTheNewNote)
{
    start();
    newNote(0);
    type(QStringLiteral("<p>of the old note</p>"));
    bool asked = false;
    meanwhile([&] {
        control().SaveEditor();
        asked = true;
    });
    load(QStringLiteral("one"), first, 1);
    ASSERT_TRUE(asked);
    EXPECT_TRUE(host().saves.empty());
    EXPECT_EQ(control().lastHtml(), first);
}

TEST_F(ControlWaits, ASaveThatWasOvertakenByALaterOneFilesNothing)
{
    start();
    newNote();
    type(QStringLiteral("<p>earlier</p>"));
    meanwhile([&] {
        bench->page()->runJavaScript(QStringLiteral("html = '<p>later</p>'"));
        control().SaveEditor();
    });
    control().SaveEditor();
    ASSERT_EQ(host().saves.size(), 1u);
    EXPECT_EQ(control().lastHtml(), QStringLiteral("<p>later</p>"));
}

TEST_F(ControlWaits, TheControlMayEndDuringASave)
{
    start();
    newNote();
    type(QStringLiteral("<p>typed</p>"));
    meanwhile([&] { delete bench->control; });
    control().SaveEditor();
    EXPECT_TRUE(host().saves.empty());
}

TEST_F(ControlWaits, TheControlMayEndWhileANoteIsBeingOpened)
{
    for (const int mode : {0, 1}) {
        start();
        newNote(0);
        meanwhile([&] { delete bench->control; });
        load(QStringLiteral("one"), first, mode);
        EXPECT_TRUE(host().saves.empty());
    }
}

TEST_F(ControlWaits, TheControlMayEndWhileAFileIsAdded)
{
    start();
    newNote();
    meanwhile([&] { delete bench->control; });
    DropFileInfo file;
    file.origName = file.fileName = QStringLiteral("a.txt");
    file.fileSize = 1;
    std::vector<DropFileInfo> files{file};
    control().Handler().AddDropFileToEditor(files);
    EXPECT_TRUE(host().saves.empty());
}

TEST_F(ControlWaits, TheControlMayEndWhileHitsArePainted)
{
    start();
    newNote();
    meanwhile([&] { delete bench->control; });
    EXPECT_EQ(control().Handler().HighlightText(QStringLiteral("word")), 0);
}

TEST_F(ControlWaits, AHostThatWithdrawsDuringASaveIsNotTold)
{
    start();
    newNote();
    type(QStringLiteral("<p>typed</p>"));
    meanwhile([&] { control().SetNmEditorNotify(nullptr); });
    control().SaveEditor();
    EXPECT_TRUE(host().saves.empty());
}

TEST_F(ControlWaits, ABrowserTakenDownDuringASaveLeavesTheLastTextThatIsKnown)
{
    start();
    load(QStringLiteral("one"), first, 0);
    type(QStringLiteral("<p>typed</p>"));
    meanwhile([&] { control().DestroyWindow(); });
    control().SaveEditor();
    EXPECT_TRUE(host().saves.empty()); // The draft is the text that was filed already.
    control().SaveEditor();
    EXPECT_TRUE(host().saves.empty());
    EXPECT_EQ(control().lastHtml(), first);
}

TEST_F(ControlWaits, PicturesOfAPasteAreNotForANoteThatWasOpenedMeanwhile)
{
    start();
    newNote(); // The first text of this page.
    const auto png = [](Qt::GlobalColor colour) {
        QImage image(2, 2, QImage::Format_RGB32);
        image.fill(colour);
        QByteArray bytes;
        QBuffer out(&bytes);
        EXPECT_TRUE(image.save(&out, "PNG"));
        return bytes;
    };
    const auto ask = [&](int load, const QByteArray& picture) {
        bench->js(QStringLiteral("nomarPrivate.post('pictures', JSON.stringify({load: %1, paste: 1,"
                                 " sources: ['data:image/png;base64,%2']})); 1")
                      .arg(load)
                      .arg(QString::fromLatin1(picture.toBase64())));
    };
    const auto isAdded = [&](const QByteArray& picture) {
        const QByteArray digest =
            QCryptographicHash::hash(picture, QCryptographicHash::Md5).toHex();
        const QStringList added = calls(QStringLiteral("AddPicToEditor"));
        return std::any_of(added.begin(), added.end(),
            [&](const QString& call) { return call.contains(QString::fromLatin1(digest)); });
    };
    ask(1, png(Qt::red));
    ASSERT_TRUE(waitFor([&] { return isAdded(png(Qt::red)); }));
    newNote();
    ask(1, png(Qt::blue)); // From the note before.
    ask(2, png(Qt::green));
    ASSERT_TRUE(waitFor([&] { return isAdded(png(Qt::green)); }));
    EXPECT_FALSE(isAdded(png(Qt::blue)));
}
