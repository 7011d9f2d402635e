#pragma once

#include "jet/storage/definition.h"
#include "jet/storage/pager.h"
#include "jet/storage/rowview.h"
#include "jet/storage/types.h"
#include "jet/storage/usagemap.h"
#include "jet/value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace jet {

class EqualityIndex;

// Walks the live rows of a table in page order. Survives changes made through the same
// Table: a deleted row is skipped, rows added behind may or may not be met.
class TableScan
{
public:
    bool next(); // steps to the next row; false at the end
    const RowView& row() const { return m_row; }

private:
    friend class Table;
    bool openNextPage();
    bool stepOnPage();

    Table* m_table = nullptr;
    std::shared_ptr<const std::vector<PageNumber>> m_pages;
    std::size_t m_nextPage = 0; // index into m_pages
    std::size_t m_nextRow = 0;
    PageRef m_page; // the page being walked
    RowView m_row;
};

// The rows of one table with their long values and indexes kept in step. Changes need an
// open transaction; a change that throws may leave pages modified, so the caller rolls the
// statement back.
class Table
{
public:
    Table(Pager& pager, PageAllocator& allocator, PageNumber definitionPage, std::string name);
    ~Table();

    const std::string& name() const { return m_name; }
    // Re-read from its pages after a rollback or reload().
    const Definition& definition() const;
    void reload();
    // Ids of columns that must not become NULL, and of those that take no empty text. The
    // catalogue knows them, not the definition.
    void setColumnRules(std::vector<std::uint16_t> required, std::vector<std::uint16_t> filled);

    TableScan scan();
    // The row, or nothing when it was deleted. Damaged pointers throw Error.
    std::optional<RowView> find(RowPointer row);
    std::int64_t countRows();

    // One value per column of definition().columns, in that order. NULL for a counter column
    // gives the next number; NULL for Boolean is False. Values are converted to the column's
    // type; throws Error (Type, Overflow, NullValue, Duplicate, Limit). Gives the new row.
    RowPointer insert(std::span<const Value> values);
    // Counter value stored by the last insert(), 0 if the table has none.
    std::int64_t lastCounter() const;
    // Replaces all columns; the row keeps its identity. Long values not changed are kept.
    void update(RowPointer row, std::span<const Value> values);
    void erase(RowPointer row);

    // Rows whose column equals the value (text by the General order), from a hash index that
    // is built on first use and kept current by the three methods above. Row order is
    // ascending by pointer. NULL matches nothing. Not for long-value columns.
    std::span<const RowPointer> lookup(int column, const Value& value);
    // The same for several columns at once, but a row of other values may be among them,
    // though rarely. Worth the memory only where many such questions come.
    std::span<const RowPointer> candidates(std::span<const int> columns,
                                           std::span<const Value> values);
    // Bytes that the indexes of the last two methods occupy.
    std::size_t lookupMemory() const;

    // Position in Definition::realIndexes of an index led by that column, -1 if none. Text
    // columns are left out unless their keys are known.
    int indexLedBy(int column) const;
    // Rows whose first columns of that index equal the values, by its tree. Throws Error
    // (Unsupported) for a text whose key is not known.
    std::vector<RowPointer> seek(int realIndex, std::span<const Value> values);

    // Fills the tree of an index from the rows; throws Error (Duplicate, NullValue) before
    // anything is written. Used by CREATE INDEX; the definition names the index already.
    void buildIndex(int realIndex);
    // Frees all data, long-value, index and map pages (DROP TABLE).
    void releasePages();

    Pager& pager() const { return m_pager; }
    PageAllocator& allocator() const { return m_allocator; }

private:
    friend class TableScan;
    struct Impl;
    // Makes `view` show the row in slot `row` of the page; false when it is not one of the
    // table's live rows.
    bool show(RowView& view, const PageRef& page, std::size_t row) const;
    ByteView followMoved(RowView& view, ByteView pointer) const;
    bool owns(PageNumber page) const; // says the map, not the page
    Impl& current() const;            // after re-reading what a rollback has made stale
    RowView liveRow(RowPointer row);
    EqualityIndex& lookupIndex(std::span<const int> columns);

    void requireColumns(std::span<const Value> values) const;
    void checkRules(std::span<const Value> before, std::span<const Value> after) const;
    std::vector<Value> convertNew(std::span<const Value> values);
    std::vector<Value> valuesOf(const RowView& row) const;
    std::int64_t nextCounter();
    void storeCounter(const Value& stored);
    void storeRowCount(std::int64_t change);
    void storeRow(const RowView& view, ByteView bytes);
    void releaseLongValue(std::size_t column, ByteView item);
    void followLookups(RowPointer row, std::span<const Value> before, std::span<const Value> after);

    Pager& m_pager;
    PageAllocator& m_allocator;
    std::string m_name;
    std::unique_ptr<Impl> m_impl;
};

} // namespace jet
