#pragma once

#include "bench/ratios.h"

#include "journals/gradesheet.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace data {
class Journal;
}
namespace jet {
class Database;
}

namespace bench {

class Peer;

// The scratch copy of a large journal that the benchmarks read and change; open only while
// they need it, since other programs are measured on the same file.
class OpenJournal
{
public:
    explicit OpenJournal(std::filesystem::path path);
    ~OpenJournal();

    const std::filesystem::path& path() const { return m_path; }
    jet::Database& database(); // opens and checks the journal first if it is closed
    void close();

private:
    std::filesystem::path m_path;
    std::unique_ptr<data::Journal> m_journal;
};

// What is compared: the journal, the native SQLite file with the same rows, and jurnalctl
// beside mdb-export.
struct Bench
{
    OpenJournal& journal;
    Peer& peer;
    std::filesystem::path jurnalctl;
};

std::vector<Comparison> comparisons(Bench& bench);

// Runs a query of the journal to its end and looks at every value.
void readAll(jet::Database& database, const std::string& sql);
// Loads the attendance of one group for one month as the journal's window does.
void fillMonth(jet::Database& database);
// Loads the grades of one group as the journal's window does, in its first discipline or in all.
void fillGrades(jet::Database& database, journals::GradeMode mode, bool allDisciplines);

} // namespace bench
