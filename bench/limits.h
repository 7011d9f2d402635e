#pragma once

#include <filesystem>
#include <string>

namespace bench {

class OpenJournal;

// Figures that have a limit of their own instead of a peer. Each prints its lines and gives
// the number of limits missed.

// Peak memory of jurnalctl when it opens the journal, scans it and looks rows up in it. Must
// be called before this program has grown itself: a child's peak begins with its parent's.
int checkMemory(const std::filesystem::path& jurnalctl, const std::filesystem::path& journal);

// Processor time of the first month filled after opening, hash indexes built on the way.
int checkFirstFill(OpenJournal& journal);

// Processor time of the grades filled in each mode and view, with the indexes already built.
int checkGradeFills(OpenJournal& journal);

// Time from the command to results on disk, computed and written for one group in one discipline.
int checkFinals(OpenJournal& journal);

// Time from the command to rows on disk, three months of lessons missed by one student.
int checkPeriod(OpenJournal& journal);

// Time from opening a timetable to its lessons on disk, in an empty journal.
int checkImport(OpenJournal& journal);

// Processor time of each statement, of one group and of all.
int checkStatements(OpenJournal& journal);

// Prints the line of a figure; 1 when it is beyond its limit, else 0.
int report(const std::string& name, double measured, double limit, const char* unit);

} // namespace bench
