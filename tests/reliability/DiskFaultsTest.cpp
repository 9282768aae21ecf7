// Each file operation of each thing the store does fails in turn, with each error a disk knows.

#include "reliability/DiskFaults.h"

#include "reliability/Figures.h"
#include "reliability/StoreOperations.h"
#include "support/TestStore.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDirIterator>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>

namespace {

using Files = std::map<QString, QByteArray>;

Files filesOf(const TestStore& store)
{
    Files files;
    QDirIterator each(store.appDir(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        const QString path = each.next();
        files[path] = readFile(path);
    }
    return files;
}

bool isWhole(const QString& path, const QByteArray& bytes)
{
    const QString name = QFileInfo(path).completeBaseName();
    static const QRegularExpression digest(QStringLiteral("^[0-9a-f]{32}$"));
    return !digest.match(name).hasMatch()
        || name
        == QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

const int kErrors[] = {ENOSPC, EIO, EROFS, EACCES, EDQUOT, EINTR};

bool isFlush(const std::string& call)
{
    return call == "fsync" || call == "fsync of a folder";
}

/// Whether something is on the disk because of that call alone. A flush behind a flush of the same
/// bytes may fail unseen.
bool isNeededFlush(const std::vector<std::string>& calls, std::size_t at)
{
    if (calls[at] != "fsync")
        return calls[at] == "fsync of a folder";
    while (at > 0) {
        const std::string& before = calls[--at];
        if (before == "fsync")
            return false;
        if (before == "write" || before == "copy_file_range")
            return true;
    }
    return true;
}

/// The short run takes the errors in turn, one for each call; the long one, and a flush in both,
/// takes them all.
bool isTaken(int at, const std::string& call, int error)
{
    return figures::isDeep() || isFlush(call)
        || kErrors[std::size_t(at) % std::size(kErrors)] == error;
}

/// One call that fails, and what it did to an operation.
struct Fault {
    const StoreOperation& operation;
    std::string call;
    int error;
    int result;
};

class DiskFault : public testing::TestWithParam<StoreOperation> {
protected:
    static std::vector<std::string> callsOf(const StoreOperation& operation)
    {
        const TestStore store;
        operation.prepare(store);
        const DiskFaults watching(store.appDir());
        EXPECT_EQ(operation.run(store), 1);
        return DiskFaults::calls();
    }

    static void expectNothingLost(const Fault& fault, const Files& before, const TestStore& store)
    {
        const Files after = filesOf(store);
        const bool mayLeave = fault.call == "unlink";
        const bool isAllOrNothing = fault.operation.isAllOrNothing;
        if (isAllOrNothing && fault.result != 1 && !mayLeave) {
            EXPECT_EQ(after, before);
            return;
        }
        for (const auto& [path, bytes] : after) {
            const bool isLeftOver = path.endsWith(QStringLiteral(".tmp"));
            EXPECT_TRUE(!isLeftOver || mayLeave) << "left behind: " << path.toStdString();
            EXPECT_TRUE(isLeftOver || isWhole(path, bytes)) << path.toStdString();
            EXPECT_TRUE(!isAllOrNothing || before.contains(path)) << path.toStdString();
        }
        for (const auto& [path, bytes] : before) {
            const auto now = after.find(path);
            ASSERT_NE(now, after.end()) << path.toStdString();
            EXPECT_TRUE(isAllOrNothing || now->second == bytes) << path.toStdString();
        }
    }

    static void expectTold(const Fault& fault, const QStringList& lines)
    {
        const QRegularExpression noDigest(QStringLiteral(
            R"(^\[ERROR\]: Open file\('.*'\) to calc file md5 failed!Error code:%1\.$)")
                                              .arg(fault.error));
        for (const QString& line : lines) {
            EXPECT_TRUE(fault.operation.lines.contains(line) || noDigest.match(line).hasMatch())
                << line.toStdString();
        }
        const auto& silent = fault.operation.silent;
        const bool isSilent = std::find(silent.begin(), silent.end(), fault.call) != silent.end();
        EXPECT_TRUE(fault.result != 0 || isSilent || !lines.isEmpty()) << "not told";
    }
};

} // namespace

TEST_P(DiskFault, LosesNothingIsToldAndIsOverWhenTheDiskWorksAgain)
{
    const StoreOperation& operation = GetParam();
    const std::vector<std::string> calls = callsOf(operation);
    ASSERT_GT(calls.size(), 2U);

    for (int at = 0; at < int(calls.size()); ++at) {
        for (const int error : kErrors) {
            for (const auto lasting :
                {DiskFaults::Lasting::Once, DiskFaults::Lasting::FromThenOn}) {
                const std::string& call = calls[std::size_t(at)];
                if (!isTaken(at, call, error))
                    continue;
                if (error == EINTR && lasting == DiskFaults::Lasting::FromThenOn)
                    continue; // no call is interrupted for ever
                SCOPED_TRACE(call + ", number " + std::to_string(at) + ": " + std::strerror(error)
                    + (lasting == DiskFaults::Lasting::Once ? "" : ", lasting"));
                const TestStore store;
                operation.prepare(store);
                const Files before = filesOf(store);
                LoggedLines lines;
                Fault fault{operation, call, error, 0};
                {
                    const DiskFaults faults(store.appDir(), at, error, lasting);
                    fault.result = operation.run(store);
                    ASSERT_TRUE(DiskFaults::struck());
                }
                figures::add("disk faults survived");
                expectTold(fault, lines.take());
                EXPECT_TRUE(fault.result != 1 || operation.isDone(store)) << "told as done";
                // What may not be on the disk is not done, whatever can be read just now.
                EXPECT_TRUE(
                    fault.result != 1 || error == EINTR || !isNeededFlush(calls, std::size_t(at)));
                expectNothingLost(fault, before, store);
                EXPECT_EQ(operation.run(store), 1) << "still fails";
                EXPECT_TRUE(operation.isDone(store));
                if (HasFailure())
                    return;
            }
        }
    }
}

TEST_P(DiskFault, FlushesAFileBeforeItsNameAndTheFolderBehindIt)
{
    const StoreOperation& operation = GetParam();
    bool isFileFlushed = false;
    bool isFolderFlushed = false;
    for (const std::string& call : callsOf(operation)) {
        if (call == "fsync")
            isFileFlushed = true;
        else if (call == "fsync of a folder")
            isFolderFlushed = true;
        else if (call == "rename") {
            EXPECT_TRUE(isFileFlushed);
            isFileFlushed = isFolderFlushed = false;
        }
    }
    // Where no name was given the folder is flushed all the same: the file that is there may be
    // that of another process, which has not come to do it. The folder of an export is the user's,
    // perhaps not to be read; there the earlier file or the new one stands, and is whole.
    EXPECT_TRUE(isFolderFlushed || operation.isAllOrNothing);
}

INSTANTIATE_TEST_SUITE_P(Of, DiskFault, testing::ValuesIn(StoreOperations()),
    [](const auto& info) { return info.param.name; });
