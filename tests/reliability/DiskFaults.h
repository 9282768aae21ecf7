#pragma once

#include <QString>

#include <string>
#include <vector>

/// Makes the file operations of this process fail. The test program stands in front of the C
/// library's calls, so what Qt does with files is seen too. Linking `DiskFaults.cpp` is what
/// installs it; without a living `DiskFaults` every call goes straight through.
///
/// One may live at a time. Only calls that name a path below its root, or a descriptor of one,
/// count.
class DiskFaults {
public:
    enum class Lasting {
        Once, ///< A single call fails.
        FromThenOn, ///< So does every call behind it that makes, grows or renames: a disk that
                    ///< stays full.
    };

    /// Lets all calls below `root` through and notes them.
    explicit DiskFaults(const QString& root);
    /// The call of the number `failAt`, from 0, fails with the `errno` value `error`.
    DiskFaults(const QString& root, int failAt, int error, Lasting lasting);
    ~DiskFaults();
    DiskFaults(const DiskFaults&) = delete;
    DiskFaults& operator=(const DiskFaults&) = delete;

    /// What was called so far, by the names of the C library; a call of several forms by that of
    /// its plainest ("stat", "rename", "fsync"). What opens for writing is "open for writing",
    /// what flushes a folder "fsync of a folder".
    static std::vector<std::string> calls();
    /// Whether the fault was met.
    static bool struck();
};
