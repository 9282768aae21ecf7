// A whole host is killed while it saves. What its `OnSaveNote` has acknowledged is on the shelf and
// in the store.

#include "kit/Print.h"
#include "reliability/Figures.h"
#include "reliability/browser/HostShelf.h"

#include "html/HtmlDocument.h"
#include "notestore/NoteHtmlRW.h"
#include "support/FileMd5.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

class KilledHost : public ::testing::Test {
protected:
    /// What the host was told of a save.
    struct Save {
        int words;
        QString file;
        QByteArray digest; ///< of the text
    };

    QTemporaryDir dir;
    std::mt19937 random{11};
    /// Of each note what was last acknowledged.
    std::map<QString, Save> acknowledged;
    int saves = 0;

    QString store() const { return dir.filePath(QStringLiteral("userdata/attachment")); }

    void take(const QByteArray& line)
    {
        const QStringList parts = QString::fromLatin1(line).simplified().split(u' ');
        ASSERT_EQ(parts.size(), 4) << line.toStdString();
        acknowledged[parts[0]] = {parts[1].toInt(), parts[2], parts[3].toLatin1()};
        ++saves;
    }

    /// Runs a host until it has told some saves, and kills it a moment later.
    void runAndKill()
    {
        QProcess host;
        host.setStandardErrorFile(QProcess::nullDevice());
        host.start(QStringLiteral(NOMAR_TEST_HOST), {dir.path()});
        for (unsigned left = 1 + random() % 40; left > 0; --left) {
            while (!host.canReadLine())
                ASSERT_TRUE(host.waitForReadyRead(60'000)) << host.exitCode();
            take(host.readLine());
        }
        QElapsedTimer moment;
        moment.start();
        for (const qint64 length = random() % 30'000'000; moment.nsecsElapsed() < length;)
            continue;
        host.kill();
        ASSERT_TRUE(host.waitForFinished());
        ASSERT_EQ(host.exitStatus(), QProcess::CrashExit);
        while (host.canReadLine())
            take(host.readLine());
    }

    /// The text of a file that is whole.
    QString whole(const QString& path)
    {
        EXPECT_EQ(FileMd5(path), QFileInfo(path).completeBaseName());
        QString html;
        NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_0;
        EXPECT_EQ(NoteHtmlRW::ReadHtmlTextFromFile(path, html, &version), 1);
        EXPECT_EQ(version, NOTE_HTML_VER_2);
        return html;
    }

    void expectAcknowledged(HostShelf& shelf, const QString& guid, const Save& save)
    {
        const std::vector<QString> files = shelf.noteFiles(guid);
        ASSERT_EQ(files.size(), 1u) << guid.toStdString();
        const QString html = whole(store() + u'/' + files[0]);
        const int words = shelf.words(guid);
        EXPECT_EQ(HostShelf::wordsOf(HtmlDocument(html).bodyText()), words);
        if (files[0] != save.file) {
            // A later save, whose telling the kill has cut off. Each adds a word.
            EXPECT_GT(words, save.words) << guid.toStdString();
            return;
        }
        EXPECT_EQ(words, save.words) << guid.toStdString();
        EXPECT_EQ(
            QCryptographicHash::hash(html.toUtf8(), QCryptographicHash::Md5).toHex(), save.digest);
    }
};

} // namespace

TEST_F(KilledHost, WhatWasAcknowledgedIsOnTheShelfAndInTheStore)
{
    const int wanted = figures::isDeep() ? 2000 : 60;
    int kills = 0;
    while (saves < wanted && !HasFailure()) {
        runAndKill();
        ++kills;
        HostShelf shelf;
        ASSERT_TRUE(shelf.open(dir.filePath(QStringLiteral("shelf.db"))));
        for (const auto& [guid, save] : acknowledged)
            expectAcknowledged(shelf, guid, save);
    }
    static const QRegularExpression temporary(QStringLiteral("^[0-9a-f]{32}\\.tmp$"));
    for (const QString& name : QDir(store()).entryList(QDir::Files | QDir::Hidden)) {
        if (!temporary.match(name).hasMatch())
            whole(store() + u'/' + name);
    }
    EXPECT_GE(kills, wanted / 60);
    figures::add("kills of a whole host", kills);
    figures::add("saves of a whole host, none lost by a kill", saves);
}
