#pragma once

#include "jet/storage/check/longvalues.h"
#include "jet/storage/check/space.h"
#include "jet/storage/definition.h"
#include "jet/storage/rowcodec.h"
#include "jet/value.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace jet::check {

// A live row, decoded. `values` has one for each column of the definition.
struct CheckedRow
{
    RowPointer pointer;
    std::vector<Value> values;
    std::vector<bool> unreadable; // columns whose value is damaged; NULL stands for it
};

// Reads all rows of one table.
class Rows
{
public:
    using Visitor = std::function<void(const CheckedRow&)>;

    // `pages` are the table's data pages. The definition must outlive this.
    Rows(Space& space, Findings& findings, const std::string& table, const Definition& definition,
         std::vector<PageNumber> pages);

    // Checks every row and gives those that can be read.
    void run(const Visitor& visit);

    std::uint32_t count() const { return m_count; } // live rows, unreadable ones included
    const std::optional<std::int64_t>& highestCounter() const { return m_highestCounter; }

private:
    void openLongValues();
    void visitPage(PageNumber number, const Visitor& visit);
    void visitRow(ByteView bytes, RowPointer pointer, const Visitor& visit);
    PageRef movedData(ByteView header, ByteView& bytes);
    void checkOffsets(const RowParts& parts);
    void checkMask(const RowParts& parts, RowPointer pointer);
    void checkItem(std::size_t column, const RowParts& parts, CheckedRow& row);
    Value decode(std::size_t column, ByteView item);
    std::size_t fixedEnd(std::uint16_t columns);
    std::string columnName(std::size_t column) const;

    Space& m_space;
    Findings& m_findings;
    std::string m_table;
    const Definition& m_definition;
    std::vector<PageNumber> m_pages;
    RowShape m_shape;
    std::map<std::uint16_t, std::size_t> m_fixedEnds; // of rows with so many columns
    std::map<std::size_t, LongValues> m_longValues;   // by column
    std::set<RowPointer> m_movedData;                 // rows that are data of moved ones
    std::set<RowPointer> m_movedDataUsed;
    std::uint32_t m_count = 0;
    std::optional<std::int64_t> m_highestCounter;
};

} // namespace jet::check
