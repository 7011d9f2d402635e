#pragma once

#include "jet/sql/columnvalue.h"
#include "jet/sql/tableplan.h"
#include "jet/storage/table.h"

#include <string>

#include <sqlite3.h>

namespace jet::sql {

// A condition of a plan with its value, tested on a row's bytes. May let through a row that
// SQLite refuses, never the other way.
class RowFilter
{
public:
    RowFilter(const PlanTerm& term, const ColumnDefinition& column, sqlite3_value* value);

    // False when no row can pass.
    bool isPossible() const { return m_test != Test::Never; }
    bool accepts(const RowView& row, std::string& buffer) const;

private:
    enum class Test { Never, Always, IsNull, IsNotNull, Integer, Number, Text };

    void compareText(sqlite3_value* value);
    void compareNumber(FieldType type, sqlite3_value* value);
    bool holds(int order) const;

    Test m_test = Test::Always;
    unsigned char m_op;
    int m_position;
    double m_number = 0;
    std::int64_t m_integer = 0;
    std::string m_text;
};

} // namespace jet::sql
