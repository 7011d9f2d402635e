#include "bench/peer.h"
#include "bench/workloads.h"

#include "data/journal.h"
#include "data/messages.h"

#include <QString>

#include <cstdio>
#include <exception>
#include <filesystem>

namespace {

class ToStandardError final : public data::Messages
{
public:
    void critical(const QString& text) override { std::fprintf(stderr, "%s\n", qPrintable(text)); }
    void information(const QString& text) override { critical(text); }
};

} // namespace

// jurnal_bench JOURNAL JURNALCTL: works on a scratch copy of the journal. Exit status 1 when
// a target is missed.
int main(int argc, char** argv)
try {
    if (argc != 3) {
        std::fprintf(stderr, "jurnal_bench JOURNAL JURNALCTL\n");
        return 2;
    }
    namespace fs = std::filesystem;
    const fs::path scratch = fs::temp_directory_path() / "jurnal-bench";
    fs::create_directories(scratch);
    const fs::path copy = scratch / "journal.mdb";
    fs::copy_file(argv[1], copy, fs::copy_options::overwrite_existing);

    ToStandardError messages;
    auto journal =
        data::Journal::openAndCheck(QString::fromStdString(copy.string()), false, messages);
    if (!journal)
        return 2;
    bench::Peer peer(journal->database(), scratch / "peer.sqlite");
    bench::Bench bench{copy, argv[2], scratch, journal, peer};
    const int missed = bench::compareAll(bench::comparisons(bench));
    journal.reset();
    fs::remove(copy);
    return missed == 0 ? 0 : 1;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
}
