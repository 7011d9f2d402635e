#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

// One line of the report: our work beside a peer's, and the ratio that is aimed at.
struct Comparison
{
    std::string name;
    std::string peerName;
    double target; // ours / peer's, at most
    std::function<void()> ours;
    std::function<void()> peers;
    int repetitions = 9;
};

// Runs every pair, our work and the peer's in turn after one warm-up each, and prints the
// median times and their ratios. Gives the number of targets missed.
int compareAll(const std::vector<Comparison>& comparisons);

} // namespace bench
