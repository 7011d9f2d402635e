#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

// Processor time shows work in memory however busy the machine is; only the other one shows
// waiting for the disk and for other programs.
enum class Clock { Processor, Wall };

// One line of the report: our work beside a peer's, and the ratio that is aimed at.
struct Comparison
{
    std::string name;
    std::string peerName;
    double target; // ours / peer's, at most
    std::function<void()> ours;
    std::function<void()> peers;
    Clock clock = Clock::Processor;
    int repetitions = 9;
    std::function<void()> before = {}; // prepares a pair, not timed
};

// Milliseconds that a piece of work takes.
double milliseconds(Clock clock, const std::function<void()>& work);

// Runs every pair, our work and the peer's in turn, and prints the median times and the
// median of the ratios. Gives the number of targets missed.
int compareAll(const std::vector<Comparison>& comparisons);

} // namespace bench
