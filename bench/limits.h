#pragma once

#include <filesystem>

namespace bench {

class OpenJournal;

// Figures that have a limit of their own instead of a peer. Each prints its lines and gives
// the number of limits missed.

// Peak memory of jurnalctl when it opens the journal, scans it and looks rows up in it. Must
// be called before this program has grown itself: a child's peak begins with its parent's.
int checkMemory(const std::filesystem::path& jurnalctl, const std::filesystem::path& journal);

// Processor time of the first month filled after opening, hash indexes built on the way.
int checkFirstFill(OpenJournal& journal);

} // namespace bench
