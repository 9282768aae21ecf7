#include "Figure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <map>
#include <stdexcept>
#include <string_view>

namespace bench {

namespace {

// A function-local registry: registrations run before main, in an order the language leaves open.
std::multimap<std::string, Measurement>& registry()
{
    static std::multimap<std::string, Measurement> benchmarks;
    return benchmarks;
}

bool isSelected(const std::string& group, int argc, char** argv)
{
    if (argc <= 1)
        return true;
    return std::any_of(argv + 1, argv + argc,
        [&](const char* part) { return group.find(part) != std::string::npos; });
}

void print(const Figure& figure)
{
    std::printf("%s\t%.2f\t%s %.2f\t%s\n", figure.name.c_str(), figure.ratio,
        figure.atMost ? "<=" : ">=", figure.goal, figure.isMet() ? "ok" : "short");
    std::fflush(stdout);
}

// Runs one benchmark and prints its figures; false when one is short or could not be measured.
bool runOne(const std::string& group, const Measurement& measurement)
{
    try {
        const std::vector<Figure> figures = measurement();
        std::for_each(figures.begin(), figures.end(), print);
        return std::all_of(
            figures.begin(), figures.end(), [](const Figure& f) { return f.isMet(); });
    } catch (const std::exception& error) {
        std::printf("%s\tnot measured: %s\t\tshort\n", group.c_str(), error.what());
        std::fflush(stdout);
        return false;
    }
}

} // namespace

Side timed(std::function<void()> work)
{
    return timedPerCall(1, std::move(work));
}

Side timedPerCall(int calls, std::function<void()> work)
{
    return [calls, work = std::move(work)] {
        const auto start = std::chrono::steady_clock::now();
        for (int call = 0; call < calls; ++call)
            work();
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        return elapsed.count() / calls;
    };
}

double median(std::vector<double> values)
{
    if (values.empty())
        throw std::invalid_argument("the median of nothing");
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

double medianRatio(const std::string& name, const Side& first, const Side& second, int rounds)
{
    first();
    second();
    std::vector<double> ratios, firsts, seconds;
    for (int round = 0; round < std::max(rounds, kRounds); ++round) {
        const bool firstBegins = round % 2 == 0;
        double a = firstBegins ? first() : 0;
        const double b = second();
        if (!firstBegins)
            a = first();
        if (!(a > 0) || !(b > 0))
            throw std::runtime_error(name + ": a side measured nothing");
        firsts.push_back(a);
        seconds.push_back(b);
        ratios.push_back(a / b);
    }
    std::fprintf(
        stderr, "# %s: %.6g against %.6g\n", name.c_str(), median(firsts), median(seconds));
    return median(ratios);
}

Figure atMost(const std::string& name, double goal, const Side& ours, const Side& floor, int rounds)
{
    return {name, medianRatio(name, ours, floor, rounds), goal, true};
}

Figure timesFaster(
    const std::string& name, double goal, const Side& ours, const Side& peer, int rounds)
{
    return {name, medianRatio(name, peer, ours, rounds), goal, false};
}

Registration::Registration(std::string group, Measurement measurement)
{
    registry().emplace(std::move(group), std::move(measurement));
}

int run(int argc, char** argv)
{
    if (argc == 2 && std::string_view(argv[1]) == "--list") {
        for (const auto& [group, measurement] : registry())
            std::puts(group.c_str());
        return 0;
    }
    bool ranAny = false;
    bool allMet = true;
    for (const auto& [group, measurement] : registry()) {
        if (!isSelected(group, argc, argv))
            continue;
        ranAny = true;
        allMet = runOne(group, measurement) && allMet;
    }
    if (!ranAny)
        return 2;
    return allMet ? 0 : 1;
}

} // namespace bench
