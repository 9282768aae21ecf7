#include "support/Md5.h"

#include "support/FileMd5.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QFile>

#include <fcntl.h>
#include <random>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

QByteArray hexadecimal(const Md5Context::Digest& digest)
{
    return QByteArray(reinterpret_cast<const char*>(digest.data()), digest.size()).toHex();
}

QByteArray noise(qsizetype length, unsigned seed = 1)
{
    std::mt19937 random(seed);
    QByteArray bytes(length, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

QByteArray standard(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

} // namespace

// RFC 1321, appendix A.5.
TEST(Md5, FollowsTheStandardVectors)
{
    const std::vector<std::pair<const char*, const char*>> vectors{
        {"", "d41d8cd98f00b204e9800998ecf8427e"}, {"a", "0cc175b9c0f1b6a831c399e269772661"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
        {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
            "d174ab98d277d9f5a5611c2c9f419d9f"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
            "57edf4a22be3c955ac49da2e2107b67a"}};
    for (const auto& [message, digest] : vectors) {
        Md5Context context;
        context.update(message, qstrlen(message));
        EXPECT_EQ(hexadecimal(context.digest()), digest);
    }
}

TEST(Md5, AnySplitOfAMessageGivesTheSameDigest)
{
    const QByteArray message = noise(1000);
    const QByteArray whole = standard(message);
    for (qsizetype piece : {1, 3, 55, 56, 63, 64, 65, 127, 128, 999}) {
        Md5Context context;
        for (qsizetype i = 0; i < message.size(); i += piece) {
            const QByteArray part = message.mid(i, piece);
            context.update(part.constData(), static_cast<std::size_t>(part.size()));
        }
        EXPECT_EQ(hexadecimal(context.digest()), whole) << piece;
    }
}

TEST(Md5, TakingTheDigestDoesNotDisturbTheMessage)
{
    for (qsizetype length = 0; length <= 130; ++length) {
        const QByteArray head = noise(length);
        Md5Context context;
        context.update(head.constData(), static_cast<std::size_t>(length));
        EXPECT_EQ(hexadecimal(context.digest()), standard(head));
        EXPECT_EQ(hexadecimal(context.digest()), standard(head));
        context.update("tail", 4);
        EXPECT_EQ(hexadecimal(context.digest()), standard(head + "tail"));
    }
}

// 2^32 bits and more: the low word of the count wraps.
TEST(Md5, TheBitCountCarriesIntoItsHighWord)
{
    const QByteArray piece = noise(1 << 20);
    QCryptographicHash hash(QCryptographicHash::Md5);
    Md5Context context;
    for (int i = 0; i < 513; ++i) {
        hash.addData(piece);
        context.update(piece.constData(), static_cast<std::size_t>(piece.size()));
    }
    EXPECT_EQ(hexadecimal(context.digest()), hash.result().toHex());
}

TEST(FileMd5, AnEmptyFileHasTheDigestOfTheEmptyMessage)
{
    const TestStore store;
    EXPECT_EQ(FileMd5(store.write(QStringLiteral("x"), "")),
        QStringLiteral("d41d8cd98f00b204e9800998ecf8427e"));
}

TEST(FileMd5, LengthsAroundBlocksAndPiecesGiveTheStandardDigest)
{
    const TestStore store;
    for (const qsizetype length :
        {1, 55, 56, 57, 63, 64, 65, 119, 120, 1023, 1024, 1025, 65535, 65536, 65537, 1 << 20}) {
        const QByteArray bytes = noise(length, static_cast<unsigned>(length));
        const QString path = store.write(QStringLiteral("x"), bytes);
        qint64 read = 0;
        EXPECT_EQ(FileMd5(path, &read).toUtf8(), standard(bytes)) << length;
        EXPECT_EQ(read, length);
    }
}

TEST(FileMd5, AFileHeldOpenForWritingIsDigested)
{
    const TestStore store;
    QFile file(store.path(QStringLiteral("x")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("abc");
    file.flush();
    EXPECT_EQ(FileMd5(file.fileName()), QStringLiteral("900150983cd24fb0d6963f7d28e17f72"));
}

TEST(FileMd5, APathThatCannotBeOpenedGivesTheEmptyStringAndOneLineWithTheCode)
{
    const TestStore store;
    const QString missing = store.path(QStringLiteral("missing %s %1"));
    const auto line = [](const QString& path, int code) {
        return QStringList(QStringLiteral("[ERROR]: Open file('") + path
            + QStringLiteral("') to calc file md5 failed!Error code:%1.").arg(code));
    };
    LoggedLines lines;
    EXPECT_EQ(FileMd5(missing), QString());
    EXPECT_EQ(lines.take(), line(missing, ENOENT));
    EXPECT_EQ(FileMd5(store.store()), QString());
    EXPECT_EQ(lines.take(), line(store.store(), EISDIR));
    EXPECT_EQ(FileMd5(QString()), QString());
    EXPECT_EQ(lines.take(), line(QString(), ENOENT));
}

TEST(FileMd5, AFileWithoutTheRightToReadGivesTheEmptyString)
{
    const TestStore store;
    const QString path = store.write(QStringLiteral("x"), "abc");
    ASSERT_EQ(::chmod(QFile::encodeName(path), 0), 0);
    const WithoutRoot rights;
    EXPECT_EQ(FileMd5(path), QString());
}

TEST(FileMd5, AFifoASocketAndADeviceAreRefusedWithoutWaiting)
{
    const TestStore store;
    const QString fifo = store.path(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo), 0600), 0);
    EXPECT_EQ(FileMd5(fifo), QString());
    EXPECT_EQ(FileMd5(QStringLiteral("/dev/zero")), QString());

    const QByteArray path = QFile::encodeName(store.path(QStringLiteral("s")));
    sockaddr_un address{AF_UNIX, {}};
    ASSERT_LT(path.size(), qsizetype(sizeof address.sun_path));
    qstrncpy(address.sun_path, path, sizeof address.sun_path);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(FileMd5(QString::fromUtf8(path)), QString());
    ::close(descriptor);
}

// /proc/self/mem opens as a regular file and cannot be read at its start.
TEST(FileMd5, AReadErrorCountsAsTheEndOfTheFile)
{
    qint64 length = -1;
    EXPECT_EQ(FileMd5(QStringLiteral("/proc/self/mem"), &length),
        QStringLiteral("d41d8cd98f00b204e9800998ecf8427e"));
    EXPECT_EQ(length, 0);
}
