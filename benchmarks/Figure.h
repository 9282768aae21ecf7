#pragma once

// The measuring stick of ./bench. A figure is a ratio between this project and a floor or a peer,
// both measured in one run and in turn, because on a shared machine only such a ratio can be
// repeated.
//
// A benchmark is a function that returns its figures, registered by a static object of its file:
//
//     static const bench::Registration fileMd5 {"FileMd5", [] {
//         return std::vector<bench::Figure> {
//             bench::atMost("FileMd5, 256 MB", 1.1, bench::timed(ours), bench::timed(md5sum))};
//     }};
//
// A peer that is another program, or a quantity that is no time, gives its own side: any function
// that returns the measured number, in a unit both sides share (seconds, bytes).

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Figure {
    std::string name; ///< What was measured, against what; printed as it stands, so no tab in it.
    double ratio; ///< Median over the rounds of the ratio within one round.
    double goal;
    bool atMost; ///< The ratio may not be above the goal; otherwise it may not be below it.

    bool isMet() const { return atMost ? ratio <= goal : ratio >= goal; }
};

/// One side of a comparison: measures once and returns the measured quantity, which must be above
/// zero.
using Side = std::function<double()>;

/// The fewest rounds a figure may rest on.
constexpr int kRounds = 5;

/// A side that is the wall-clock time, in seconds, of one call of \a work.
Side timed(std::function<void()> work);

/// A side that is the wall-clock time, in seconds, of one call out of \a calls made back to back:
/// for work that is too short for the clock.
Side timedPerCall(int calls, std::function<void()> work);

/// The median of \a values; of an even number, the mean of the middle two. \a values must not be
/// empty.
double median(std::vector<double> values);

/// The median of first / second over \a rounds rounds (never fewer than kRounds). The two sides are
/// measured in turn, after one uncounted round of both, and the one that begins changes from round
/// to round. Both medians go to the standard error stream.
double medianRatio(
    const std::string& name, const Side& first, const Side& second, int rounds = kRounds);

/// A figure "at most \a goal times the floor": ours / floor.
Figure atMost(const std::string& name, double goal, const Side& ours, const Side& floor,
    int rounds = kRounds);

/// A figure "at least \a goal times faster than the peer": peer / ours.
Figure timesFaster(
    const std::string& name, double goal, const Side& ours, const Side& peer, int rounds = kRounds);

/// A benchmark: measures and returns its figures. It may throw std::runtime_error when it cannot
/// measure, which counts as a figure that is short.
using Measurement = std::function<std::vector<Figure>()>;

/// Adds a benchmark to the registry of this binary. \a group is what the command line selects by.
class Registration {
public:
    Registration(std::string group, Measurement measurement);
};

/// Runs the registered benchmarks in the order of their groups' names and prints one line per
/// figure to the standard output as soon as it is known: name, ratio, goal ("<= 1.10" or
/// ">= 30.00"), "ok" or "short", parted by tabs. Arguments: `--list` prints the groups and runs
/// nothing; any other argument selects the groups whose name contains it. Returns 0 when every
/// figure is met, 1 when one is short, 2 when nothing of this binary was selected.
int run(int argc, char** argv);

} // namespace bench
