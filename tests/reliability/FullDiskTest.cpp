// A real file system without room: saves and imports fail, are told, and work again when there is
// room.

#include "attachstore/FileRecord.h"
#include "attachstore/Import.h"
#include "notestore/NoteHtmlRW.h"
#include "reliability/Figures.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cerrno>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

/// A file system of a few hundred kilobytes that only this thread sees, at the store's place.
class SmallDisk {
public:
    explicit SmallDisk(const QString& at)
        : m_path(QFile::encodeName(at))
    {
        m_isThere = ::unshare(CLONE_NEWNS) == 0
            && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
            && ::mount("tmpfs", m_path.constData(), "tmpfs", 0, "size=400k") == 0;
    }
    ~SmallDisk()
    {
        if (m_isThere)
            ::umount2(m_path.constData(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isThere() const { return m_isThere; }

    /// Leaves room for nothing.
    void fill()
    {
        const int file = ::open(filler().constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        ASSERT_GE(file, 0);
        const QByteArray piece(4096, 'x');
        while (::write(file, piece.constData(), std::size_t(piece.size())) > 0) { }
        EXPECT_EQ(errno, ENOSPC);
        ::close(file);
    }
    void empty() { ::unlink(filler().constData()); }

private:
    QByteArray filler() const { return m_path + "/filler"; }

    const QByteArray m_path;
    bool m_isThere;
};

int save(int number)
{
    QString html = QStringLiteral("<p>note %1</p>").arg(number).repeated(1000);
    NewAttachFile record;
    NOTE_HTML_VER_NUMBER version = NOTE_HTML_VER_2;
    return NoteHtmlRW::SaveHtmlTextToFile(html, record, &version);
}

int import(const QString& path)
{
    MAF_RESULT result;
    return attachstore::MoveAttFile(
        QStringLiteral("0123456789abcdef"), *attachstore::RecordOfPath(path), result);
}

/// Runs a program as the root of a user namespace of its own, which may mount; false if the kernel
/// lets nobody have one, or the program fails.
bool runsAsRootOfItsOwn(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(
        QStringLiteral("unshare"), QStringList{QStringLiteral("-rm"), program} + arguments);
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}

} // namespace

TEST(FullDisk, IsToldLeavesNothingHalfAndWorksAgainWithRoom)
{
    const TestStore store;
    const QTemporaryDir sources;
    const QString source = sources.filePath(QStringLiteral("a.txt"));
    writeFile(source, QByteArray(60'000, 'a'));
    SmallDisk disk(store.store());
    if (!disk.isThere()) {
        const QStringList mount{QStringLiteral("-t"), QStringLiteral("tmpfs"),
            QStringLiteral("tmpfs"), store.store()}; // It ends with its namespace.
        if (::geteuid() == 0 || !runsAsRootOfItsOwn(QStringLiteral("mount"), mount))
            GTEST_SKIP() << "no file system may be mounted here";
        // Only a process without threads may enter such a namespace, so it is another one's work.
        EXPECT_TRUE(runsAsRootOfItsOwn(QCoreApplication::applicationFilePath(),
            {QStringLiteral("--gtest_filter=FullDisk.*")}));
        return;
    }

    ASSERT_EQ(save(1), 1);
    const QStringList before = store.names();
    disk.fill();
    LoggedLines lines;
    for (int round = 0; round < 10; ++round) {
        EXPECT_EQ(save(2 + round), 0);
        EXPECT_EQ(lines.take(),
            QStringList(QStringLiteral("[ERROR] NoteHtmlRW::SaveHtmlTextToFile faild!")));
        EXPECT_EQ(import(source), 0);
        EXPECT_EQ(lines.take(),
            QStringList(QStringLiteral("[ERROR] NmWebNoteHandler::MoveAttFile copy file fald ! ")));
        figures::add("writes refused by a full disk", 2);
    }
    QStringList now = store.names();
    now.removeAll(QStringLiteral("filler"));
    now.removeAll(QStringLiteral("0123456789abcdef")); // the note's folder, which takes no room
    EXPECT_EQ(now, before);

    disk.empty();
    EXPECT_EQ(save(2), 1);
    EXPECT_EQ(import(source), 1);
    EXPECT_EQ(readFile(store.path(QStringLiteral("0123456789abcdef/a.txt"))), readFile(source));
}
