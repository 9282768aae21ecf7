#include "support/OwnWrites.h"

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>

namespace ownwrites {
namespace {

constexpr std::size_t kMost = 4096;

struct Writes {
    std::mutex mutex;
    int watchers = 0;
    std::deque<std::pair<QString, FileStamp>> newestLast;
};

Writes& writes()
{
    static Writes all;
    return all;
}

} // namespace

Watching::Watching()
{
    const std::lock_guard lock(writes().mutex);
    ++writes().watchers;
}

Watching::~Watching()
{
    const std::lock_guard lock(writes().mutex);
    if (--writes().watchers == 0)
        writes().newestLast.clear();
}

void remember(const QString& path, const FileStamp& stamp)
{
    const std::lock_guard lock(writes().mutex);
    if (writes().watchers == 0)
        return;
    writes().newestLast.emplace_back(path, stamp);
    if (writes().newestLast.size() > kMost)
        writes().newestLast.pop_front();
}

std::optional<FileStamp> take(const QString& path)
{
    const std::lock_guard lock(writes().mutex);
    auto& all = writes().newestLast;
    const auto found = std::find_if(
        all.rbegin(), all.rend(), [&](const auto& write) { return write.first == path; });
    if (found == all.rend())
        return std::nullopt;
    const FileStamp stamp = found->second;
    std::erase_if(all, [&](const auto& write) { return write.first == path; });
    return stamp;
}

} // namespace ownwrites
