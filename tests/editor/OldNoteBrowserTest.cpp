// A note of version 1 in the page that users see: its attachments outlive the save that upgrades
// them, and the one behind it.

#include "kit/Print.h"
#include "kit/TestControl.h"

#include "noteattach/ExData.h"
#include "notestore/NoteHtmlRW.h"
#include "support/Paths.h"

#include <QFile>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

class OldNote : public ::testing::Test {
protected:
    Bench bench;

    void SetUp() override
    {
        ASSERT_TRUE(bench.waitReady());
        const QString path = GetAttachmentDir() + QStringLiteral("/old.html");
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(
            "<!--{\"ver_number\":1}--><p>old "
            "<img class=\"userdata/attachment/slash.png\" src=\"../userdata/attachment/slash.png\">"
            "<img class=\"userdata\\attachment\\back.pdf\" src=\"../userdata\\attachment\\c.bmp\">"
            "<img class=\"photo\" src=\"../userdata\\attachment\\plain.png\"></p>");
        file.close();
        bench.control->LoadEditor(QStringLiteral("guid"), {QStringLiteral("old.html")}, {}, 0);
        ASSERT_TRUE(waitFor([&] {
            return bench.inNote(QStringLiteral("doc.body.textContent.includes('old')")).toBool();
        }));
    }

    const RecordingHost::Save& saveAfterTyping(const QString& text)
    {
        const std::size_t before = bench.host.saves.size();
        bench.control->activateWindow();
        bench.input()->setFocus();
        bench.inNote(QStringLiteral("(doc.defaultView.focus(), doc.body.focus(), "
                                    "doc.getSelection().selectAllChildren(doc.body), "
                                    "doc.getSelection().collapseToEnd(), 1)"));
        QTest::keyClicks(bench.input(), text);
        EXPECT_TRUE(waitFor([&] {
            return bench.inNote(QStringLiteral("doc.body.textContent")).toString().contains(text);
        }));
        bench.control->SaveEditor();
        EXPECT_EQ(bench.host.saves.size(), before + 1);
        return bench.host.saves.back();
    }

    static void expectAlive(const RecordingHost::Save& save)
    {
        for (const QString& name : {QStringLiteral("slash.png"), QStringLiteral("back.pdf")}) {
            EXPECT_TRUE(std::any_of(save.files.begin(), save.files.end(), [&](const auto& record) {
                return record.fileType == 2 && record.fileName == name && record.origName == name;
            })) << qPrintable(name);
        }
        QString html;
        NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_0;
        ASSERT_EQ(NoteHtmlRW::ReadHtmlTextFromFile(save.files.at(0).filePath, html, &version), 1);
        EXPECT_EQ(version, NOTE_HTML_VER_2);
        EXPECT_EQ(html.count(QStringLiteral("nm_exdata")), 2) << qPrintable(html);
    }
};

} // namespace

TEST_F(OldNote, ItsAttachmentsAreAliveAfterTheSaveThatUpgradesThemAndTheOneBehindIt)
{
    expectAlive(saveAfterTyping(QStringLiteral("first")));
    expectAlive(saveAfterTyping(QStringLiteral("second")));
}

TEST_F(OldNote, AnUpgradedAttachmentIsOpenedByItsNameWithEitherKindOfSlash)
{
    saveAfterTyping(QStringLiteral("typed"));
    for (const QString& name : {QStringLiteral("back.pdf"), QStringLiteral("slash.png")}) {
        bench.host.opened.clear();
        bench.inNote(QStringLiteral("doc.querySelector('img[class$=\"%1\"]').dispatchEvent("
                                    "new MouseEvent('dblclick', {bubbles: true}))")
                         .arg(name));
        ASSERT_TRUE(waitFor([&] { return !bench.host.opened.isEmpty(); }));
        EXPECT_EQ(bench.host.opened, QStringList(QStringLiteral("guid|%1|%1").arg(name)));
    }
}
