#include "bench/ratios.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <map>

namespace bench {

namespace {

// Keeps the medians of every benchmark instead of printing each run.
class MedianReporter final : public benchmark::BenchmarkReporter
{
public:
    struct Medians
    {
        double ours = 0, peers = 0; // milliseconds
        double ratio = 0;
    };

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.aggregate_name == "median")
                m_medians[run.run_name.function_name] = {
                    run.counters.at("ours"), run.counters.at("peers"), run.counters.at("ratio")};
        }
    }
    // Null for a benchmark that a filter left out.
    const Medians* find(const std::string& name) const
    {
        const auto found = m_medians.find(name);
        return found == m_medians.end() ? nullptr : &found->second;
    }

private:
    std::map<std::string, Medians> m_medians;
};

// Both sides in turn, so that whatever else the machine does falls on both alike.
void comparePair(benchmark::State& state, const Comparison& comparison)
{
    for (auto _ : state) {
        if (comparison.before)
            comparison.before();
        const double ours = milliseconds(comparison.clock, comparison.ours);
        const double peers = milliseconds(comparison.clock, comparison.peers);
        state.SetIterationTime(ours / 1000);
        state.counters["ours"] = ours;
        state.counters["peers"] = peers;
        state.counters["ratio"] = ours / peers;
    }
}

void add(const Comparison& comparison)
{
    benchmark::RegisterBenchmark(
        comparison.name.c_str(),
        [comparison](benchmark::State& state) { comparePair(state, comparison); })
        ->Iterations(1)
        ->Repetitions(comparison.repetitions)
        ->ReportAggregatesOnly(true)
        ->UseManualTime();
}

} // namespace

double milliseconds(Clock clock, const std::function<void()>& work)
{
    const std::clock_t busy = std::clock();
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> passed =
        std::chrono::steady_clock::now() - start;
    if (clock == Clock::Wall)
        return passed.count();
    return 1000.0 * static_cast<double>(std::clock() - busy) / CLOCKS_PER_SEC;
}

int compareAll(const std::vector<Comparison>& comparisons)
{
    for (const Comparison& comparison : comparisons)
        add(comparison);
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    int missed = 0;
    std::printf("%-46s %10s %10s %7s %8s  %s\n", "what", "ours, ms", "peer, ms", "ratio", "target",
                "peer");
    for (const Comparison& comparison : comparisons) {
        const auto* medians = reporter.find(comparison.name);
        if (!medians)
            continue;
        const bool met = medians->ratio <= comparison.target;
        missed += met ? 0 : 1;
        std::printf("%-46s %10.2f %10.2f %7.2f %8.2f  %s%s\n", comparison.name.c_str(),
                    medians->ours, medians->peers, medians->ratio, comparison.target,
                    comparison.peerName.c_str(), met ? "" : "   MISSED");
    }
    return missed;
}

} // namespace bench
