#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

struct sqlite3;

namespace jet {
class Database;
}

namespace bench {

// A native SQLite file that holds the same rows as the journal, with an index on each
// column that the journal's hash indexes serve.
class Peer
{
public:
    // Copies POS, USP, SPSTUD, UROKI and SPNAGR of the journal.
    Peer(jet::Database& journal, const std::filesystem::path& path);
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    ~Peer();

    void execute(const std::string& sql);
    // Prepares, runs and reads every column of every row; gives the number of rows.
    std::int64_t query(const std::string& sql);

private:
    void copyTable(jet::Database& journal, const std::string& table);
    void addIndex(const std::string& column); // "TABLE(COLUMN)"

    sqlite3* m_handle = nullptr;
    std::filesystem::path m_path;
};

} // namespace bench
