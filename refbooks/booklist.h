#pragma once

#include "refbooks/columns.h"
#include "refbooks/columntexts.h"
#include "refbooks/listquery.h"
#include "shell/wording.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace jet {
class Database;
}

namespace refbooks {

// What the texts of a column stand for.
enum class ColumnKind { Text, Number, Date };

// The list of a book: its rows are read once per load() and kept in compact form. Row
// numbers below are positions in the list as shown, sorted and narrowed.
class BookList
{
public:
    BookList(Book book, const shell::Wording& wording);

    Book book() const { return m_book; }
    const std::vector<Column>& columns() const { return m_columns; }
    // Of the rows loaded.
    ColumnKind kind(int column) const { return m_kinds[static_cast<std::size_t>(column)]; }

    // A list of the same book, order and filter line, without rows.
    BookList emptied() const;

    // Runs the book's query. The order and the filter line stay in force. Throws jet::Error;
    // the list then keeps the rows it had.
    void load(jet::Database& database, const ListFilter& filter);

    int rowCount() const { return static_cast<int>(m_shown.size()); }
    // What the list leaves out by its query, as a sentence for the user; "" for nothing.
    QString leftOut() const;
    int loadedCount() const { return static_cast<int>(m_keys.size()); }
    std::int64_t key(int row) const { return m_keys[m_shown[static_cast<std::size_t>(row)]]; }
    const QString& text(int row, int column) const;
    const QString& name(int row) const { return text(row, m_nameColumn); }
    int nameColumn() const { return m_nameColumn; }
    // The row's number in the query's order as text that sorts as the number does.
    QString sortText(int row) const;
    // Nothing when the key is not in the list as shown.
    std::optional<int> rowOfKey(std::int64_t key) const;
    // Of selected rows, in the list's order, whatever the order of `rows`.
    std::vector<std::int64_t> keys(std::span<const int> rows) const;

    // Sorts by a column, equal rows in the query's order; nothing restores the query's order.
    void sort(std::optional<int> column, Qt::SortOrder order = Qt::AscendingOrder);
    // Shows only rows that hold every word of `line`, each in any column; "" shows all.
    void narrow(const QString& line);
    // The first row from `from` on, going round, whose text begins with what was typed.
    std::optional<int> find(const QString& typed, int from, int column) const;

private:
    void arrange();

    Book m_book;
    std::vector<Column> m_columns;
    int m_nameColumn;
    shell::Wording m_wording;
    std::vector<std::int64_t> m_keys; // in the query's order
    std::vector<ColumnTexts> m_cells; // of each column
    std::vector<ColumnKind> m_kinds;
    std::vector<std::uint32_t> m_shown;
    std::int64_t m_leftOut = 0; // rows
    std::optional<int> m_sortColumn;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    QString m_line;
};

// "000000000000012.000", filled with blanks to 100 characters: such texts sort as their
// numbers do. Requires 0 <= number < 1e15.
QString sortText(double number);

} // namespace refbooks
