#pragma once

#include "jet/database.h"
#include "tests/support/outsidecheckers.h"

#include <QDate>
#include <QString>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// A timetable's database made for one test, with the tables that the import reads, all of their
// fields but those left out. The methods that add rows give their keys.
class TimetableFile
{
public:
    // `without` names tables ("SPTIPZ") and fields ("SPOTD.KOD") that it lacks.
    explicit TimetableFile(const std::vector<std::string>& without = {}, bool encoded = false);

    using Values = std::vector<std::pair<std::string, jet::Value>>;
    int add(const std::string& table, const Values& values);
    // The keys of what a lesson needs.
    struct Place
    {
        int teacher, group, discipline, workload;
    };
    // A teacher, speciality, group, discipline and workload, all new.
    Place place(const std::string& suffix = "");
    int lesson(const Place& place, QDate date, int number, const jet::Value& project = 0);

    jet::Database& database() { return *m_database; }
    // Closes the file and gives its path.
    QString path();

private:
    jet::test::TemporaryFolder m_folder;
    std::unique_ptr<jet::Database> m_database;
    std::optional<jet::Transaction> m_filling; // one step is quicker than one a row
};
