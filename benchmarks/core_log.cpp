// What a caller pays for a line in the log: against the least a queue can cost, a raw record pushed
// under a mutex, and against an asynchronous logger of the trade. Nothing is written while the
// clock runs; the queues are emptied between the rounds and keep their memory, as in a running
// process.

#include "Figure.h"

#include "support/LogWriter.h"

#include <QDir>
#include <QTemporaryDir>

#include <spdlog/async.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <ctime>
#include <mutex>
#include <thread>
#include <vector>

namespace {

constexpr int kLines = 10'000; // of one thread in one round

const QString& message()
{
    static const QString text =
        QStringLiteral("[ERROR] 解析html字串，获取附件列表失败！ NmWebNoteHandler::ParseAttList");
    return text;
}

// The seconds that a line takes its caller, the threads starting at once.
double secondsPerLine(int threads, const std::function<void()>& logOneLine)
{
    const auto one = bench::timedPerCall(kLines, logOneLine);
    std::vector<double> seconds(static_cast<std::size_t>(threads));
    std::vector<std::thread> crowd;
    for (double& mine : seconds)
        crowd.emplace_back([&] { mine = one(); });
    for (std::thread& thread : crowd)
        thread.join();
    return bench::median(seconds);
}

struct RawRecord {
    std::timespec time;
    std::thread::id thread;
    QString message;
};

bench::Side rawPush(int threads)
{
    return [threads, mutex = std::make_shared<std::mutex>(),
               queue = std::make_shared<std::vector<RawRecord>>()] {
        queue->clear();
        return secondsPerLine(threads, [&] {
            RawRecord record{{}, std::this_thread::get_id(), message()};
            std::timespec_get(&record.time, TIME_UTC);
            const std::lock_guard lock(*mutex);
            queue->push_back(std::move(record));
        });
    };
}

bench::Side writeLog(int threads, const QString& directory)
{
    auto writer = std::make_shared<LogWriter>(directory + QStringLiteral("/ours.log"));
    return [=] {
        writer->pass();
        return secondsPerLine(threads, [&] { writer->append(message()); });
    };
}

bench::Side spdlogAsync(int threads, const QString& directory)
{
    auto sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(
        directory.toStdString() + "/spdlog.log", true);
    auto pool = std::make_shared<spdlog::details::thread_pool>(1 << 16, 1);
    auto logger = std::make_shared<spdlog::async_logger>("bench", sink, pool); // holds it weakly
    return [threads, logger, pool] {
        const std::string text = message().toStdString();
        return secondsPerLine(threads, [&] { logger->error(text); });
    };
}

std::vector<bench::Figure> measure()
{
    const QTemporaryDir directory;
    std::vector<bench::Figure> figures;
    for (const int threads : {1, 2}) {
        const std::string who = "WriteLog, " + std::to_string(threads) + " thread(s), against ";
        const auto ours = writeLog(threads, directory.path());
        figures.push_back(bench::atMost(who + "a raw push", 2.5, ours, rawPush(threads), 25));
        figures.push_back(bench::timesFaster(
            who + "spdlog asynchronous", 3, ours, spdlogAsync(threads, directory.path()), 25));
    }
    return figures;
}

const bench::Registration registration{"WriteLog", measure};

} // namespace
