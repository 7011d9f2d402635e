#pragma once

#include "refbooks/recorddraft.h"

#include <QHash>

#include <cstdint>
#include <string_view>
#include <vector>

namespace jet {
class Database;
}

namespace imports {

// The rows that a book has, to be found by what tells them apart: the fields that no two rows may
// share; a group's speciality, course and name; a student's group and full name; whom, what,
// whose and when a workload is, since it comes back in each term; the day of a holiday; the days of
// a timetable project.
class ExistingRows
{
public:
    // `draft` is one of the book; its values are overwritten. Throws jet::Error.
    ExistingRows(jet::Database& database, refbooks::RecordDraft draft);

    // The rows that are the same as the draft by the first of the book's distinctions that tells.
    std::vector<std::int64_t> find(const refbooks::RecordDraft& draft) const;
    void add(const refbooks::RecordDraft& draft, std::int64_t key);

private:
    using Fields = std::vector<std::string_view>;
    static QString nameOf(const refbooks::RecordDraft& draft, const Fields& fields);

    std::vector<Fields> m_distinctions;
    std::vector<QHash<QString, std::vector<std::int64_t>>> m_keys; // for each of them
};

} // namespace imports
