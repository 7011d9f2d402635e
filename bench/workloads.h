#pragma once

#include "bench/ratios.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace data {
class Journal;
}

namespace bench {

class Peer;

// What is compared: a scratch copy of a large journal, the native SQLite file with the same
// rows, and jurnalctl beside mdb-export.
struct Bench
{
    std::filesystem::path journalPath; // scratch copy, may be changed
    std::filesystem::path jurnalctl;
    std::filesystem::path scratch;
    std::unique_ptr<data::Journal>& journal; // closed and reopened by the opening benchmark
    Peer& peer;
};

std::vector<Comparison> comparisons(Bench& bench);

} // namespace bench
