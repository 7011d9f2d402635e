#pragma once

#include "jet/tabledef.h"
#include "jet/value.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

struct RecordsetColumn
{
    std::string name; // DAO's name: "NAIM", or "SPOTD.NAIM" where two sources have a NAIM
    FieldType type;   // declared type of the column, or the deduced one of an expression
};

// The rows of one SELECT, read forward once.
//
//     auto rows = database.query("SELECT FAM, IM FROM SPSTUD ORDER BY FAM;");
//     while (rows.next())
//         use(rows.text("FAM"), rows["IM"]);
//
// Must not outlive its Database. Rows are read as next() asks for them; when anything is
// changed through the Database meanwhile, the rows still to come are taken into memory
// first, so a Recordset always shows the tables as they were when it was last alone.
class Recordset
{
public:
    Recordset(Recordset&&) noexcept;
    Recordset& operator=(Recordset&&) noexcept;
    ~Recordset();

    const std::vector<RecordsetColumn>& columns() const;
    // Position of a column, case-insensitive; throws Error (Fault::UnknownName).
    int column(std::string_view name) const;

    // Steps to the next row; false at the end. Throws Error when reading fails.
    bool next();

    // The present row. Requires that next() returned true. Positions are 0-based.
    Value value(int column) const;
    bool isNull(int column) const;
    std::int64_t integer(int column) const; // NULL gives 0
    double number(int column) const;        // NULL gives 0
    DateTime date(int column) const;        // NULL gives day 0
    std::string text(int column) const;     // NULL gives ""

    Value operator[](std::string_view name) const { return value(column(name)); }
    std::int64_t integer(std::string_view name) const { return integer(column(name)); }
    double number(std::string_view name) const { return number(column(name)); }
    DateTime date(std::string_view name) const { return date(column(name)); }
    std::string text(std::string_view name) const { return text(column(name)); }
    bool isNull(std::string_view name) const { return isNull(column(name)); }

private:
    friend class Database;
    struct Impl;
    explicit Recordset(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> m_impl;
};

} // namespace jet
