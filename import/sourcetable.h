#pragma once

#include "jet/value.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace jet {
class Database;
}

namespace imports {

// Which fields of a table are read, in this order: those without which rows cannot be told
// apart or joined, then those that a timetable may lack.
struct SourceFields
{
    std::string_view table;
    std::vector<std::string_view> required;
    std::vector<std::string_view> optional;
};

// Rows of one table of the timetable, held in memory. Fields are named by their position in
// SourceFields.
class SourceTable
{
public:
    // `rest` follows the table in the query, as " WHERE ...". Throws jet::Error, which names a
    // table or field that is missing.
    SourceTable(jet::Database& database, const SourceFields& fields, std::string_view rest = {});

    std::size_t size() const { return m_rows; }
    // False for an optional field that the timetable lacks: its values are NULL.
    bool has(std::size_t field) const { return m_present[field]; }
    const jet::Value& value(std::size_t row, std::size_t field) const
    {
        return m_values[row * m_present.size() + field];
    }

private:
    std::vector<bool> m_present;
    std::vector<jet::Value> m_values; // row by row
    std::size_t m_rows = 0;
};

// Throws jet::Error, which names the table or the first required field that is missing.
void requireFields(jet::Database& database, const SourceFields& fields);
bool hasField(jet::Database& database, std::string_view table, std::string_view field);

// The rows of a table by key. NULL is no key, and of equal keys the first row counts.
class RowsByKey
{
public:
    static constexpr int kNone = -1;

    RowsByKey(const SourceTable& table, std::size_t keyField);
    // The row, kNone when there is none.
    int row(const jet::Value& key) const;

private:
    std::unordered_map<std::int64_t, int> m_rows;
};

} // namespace imports
