#include "bench/ratios.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>

namespace bench {

namespace {

// Keeps the median of every benchmark instead of printing each run.
class MedianReporter final : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                m_medians[run.run_name.function_name] = run.GetAdjustedRealTime();
    }
    double median(const std::string& name) const { return m_medians.at(name); }

private:
    std::map<std::string, double> m_medians; // milliseconds
};

void add(const std::string& name, const std::function<void()>& work, int repetitions)
{
    benchmark::RegisterBenchmark(name.c_str(),
                                 [work](benchmark::State& state) {
                                     for (auto _ : state)
                                         work();
                                 })
        ->Iterations(1)
        ->Repetitions(repetitions)
        ->ReportAggregatesOnly(true)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

} // namespace

int compareAll(const std::vector<Comparison>& comparisons)
{
    for (const Comparison& comparison : comparisons) {
        comparison.ours();
        comparison.peers();
        add(comparison.name + "/ours", comparison.ours, comparison.repetitions);
        add(comparison.name + "/peer", comparison.peers, comparison.repetitions);
    }
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    int missed = 0;
    std::printf("%-46s %10s %10s %7s %8s  %s\n", "what", "ours, ms", "peer, ms", "ratio", "target",
                "peer");
    for (const Comparison& comparison : comparisons) {
        const double ours = reporter.median(comparison.name + "/ours");
        const double peers = reporter.median(comparison.name + "/peer");
        const bool met = ours <= peers * comparison.target;
        missed += met ? 0 : 1;
        std::printf("%-46s %10.2f %10.2f %7.2f %8.2f  %s%s\n", comparison.name.c_str(), ours, peers,
                    ours / peers, comparison.target, comparison.peerName.c_str(),
                    met ? "" : "   MISSED");
    }
    return missed;
}

} // namespace bench
