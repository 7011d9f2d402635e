#include "bench/limits.h"
#include "bench/peer.h"
#include "bench/reports.h"
#include "bench/workloads.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <filesystem>

// jurnal_bench JOURNAL JURNALCTL [--benchmark_filter=REGEX]: works on a scratch copy of the
// journal. Exit status 1 when a target is missed.
int main(int argc, char** argv)
try {
    benchmark::Initialize(&argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "jurnal_bench JOURNAL JURNALCTL [--benchmark_filter=REGEX]\n");
        return 2;
    }
    namespace fs = std::filesystem;
    const fs::path scratch = fs::temp_directory_path() / "jurnal-bench";
    fs::create_directories(scratch);
    const fs::path copy = scratch / "journal.mdb";
    fs::copy_file(argv[1], copy, fs::copy_options::overwrite_existing);

    int missed = bench::checkMemory(argv[2], copy);
    bench::OpenJournal journal(copy);
    missed += bench::checkFirstFill(journal);
    missed += bench::checkGradeFills(journal);
    missed += bench::checkFinals(journal);
    missed += bench::checkPeriod(journal);
    missed += bench::checkImport(journal);
    missed += bench::checkReports(journal);
    missed += bench::checkStatements(journal);
    std::printf("\n");
    bench::Peer peer(journal.database(), scratch / "peer.sqlite");
    bench::Bench bench{journal, peer, argv[2]};
    missed += bench::compareAll(bench::comparisons(bench));
    journal.close();
    fs::remove(copy);
    return missed == 0 ? 0 : 1;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
}
