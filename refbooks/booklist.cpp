#include "refbooks/booklist.h"

#include "jet/database.h"
#include "refbooks/worded.h"

#include <QStringList>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

ColumnKind kindOf(jet::FieldType type)
{
    switch (type) {
    case jet::FieldType::Text:
    case jet::FieldType::Memo:
        return ColumnKind::Text;
    case jet::FieldType::Date:
        return ColumnKind::Date;
    default:
        return ColumnKind::Number;
    }
}

} // namespace

QString sortText(double number)
{
    constexpr int kNumberLength = 19, kLength = 100;
    return QString::number(number, 'f', 3)
        .rightJustified(kNumberLength, u'0')
        .leftJustified(kLength, u' ');
}

BookList::BookList(Book book, const shell::Wording& wording)
    : m_book(book)
    , m_columns(listColumns(book, wording))
    , m_nameColumn(refbooks::nameColumn(book, m_columns))
    , m_wording(wording)
{
    m_kinds.resize(m_columns.size(), ColumnKind::Text);
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        m_cells.emplace_back(false);
}

BookList BookList::emptied() const
{
    BookList list(m_book, m_wording);
    list.m_sortColumn = m_sortColumn;
    list.m_sortOrder = m_sortOrder;
    list.m_line = m_line;
    return list;
}

void BookList::load(jet::Database& database, const ListFilter& filter)
{
    const bool isEmpty = hasFilter(m_book) && !filter.key;
    std::vector<std::int64_t> keys;
    std::vector<ColumnTexts> cells;
    std::vector<ColumnKind> kinds;
    std::vector<int> positions;
    auto rows = database.query(listQuery(m_book, filter, m_wording));
    const int keyPosition = rows.column(bookInfo(m_book).key);
    for (const Column& column : m_columns) {
        // The query of an unset filter has no joined columns, and no rows.
        positions.push_back(isEmpty ? keyPosition : rows.column(column.field));
        const auto position = static_cast<std::size_t>(positions.back());
        kinds.push_back(kindOf(rows.columns()[position].type));
        cells.emplace_back(kinds.back() != ColumnKind::Text); // those sort by value
    }
    while (rows.next()) {
        keys.push_back(rows.integer(keyPosition));
        for (std::size_t i = 0; i < cells.size(); ++i)
            cells[i].append(rows.value(positions[i]));
    }
    for (ColumnTexts& column : cells)
        column.finish();
    if (m_book == Book::Lessons)
        m_leftOut = database.rowCount("UROKI") - static_cast<std::int64_t>(keys.size());
    m_keys = std::move(keys);
    m_cells = std::move(cells);
    m_kinds = std::move(kinds);
    arrange();
}

// Who has just imported lessons must not think them lost.
QString BookList::leftOut() const
{
    if (m_leftOut == 0)
        return {};
    return worded(m_wording,
                  u"Показаны занятия, которые ведут классные руководители групп. Остальных занятий "
                  "в журнале: %L1."_s)
        .arg(m_leftOut);
}

const QString& BookList::text(int row, int column) const
{
    return m_cells[static_cast<std::size_t>(column)].text(m_shown[static_cast<std::size_t>(row)]);
}

QString BookList::sortText(int row) const
{
    return refbooks::sortText(m_shown[static_cast<std::size_t>(row)] + 1);
}

std::optional<int> BookList::rowOfKey(std::int64_t key) const
{
    const auto found =
        std::ranges::find(m_shown, key, [&](std::uint32_t row) { return m_keys[row]; });
    if (found == m_shown.end())
        return {};
    return static_cast<int>(found - m_shown.begin());
}

std::vector<std::int64_t> BookList::keys(std::span<const int> rows) const
{
    std::vector<int> sorted(rows.begin(), rows.end());
    std::ranges::sort(sorted);
    std::vector<std::int64_t> keys;
    keys.reserve(sorted.size());
    for (const int row : sorted)
        keys.push_back(key(row));
    return keys;
}

void BookList::sort(std::optional<int> column, Qt::SortOrder order)
{
    m_sortColumn = column;
    m_sortOrder = order;
    arrange();
}

void BookList::narrow(const QString& line)
{
    m_line = line;
    arrange();
}

std::optional<int> BookList::find(const QString& typed, int from, int column) const
{
    const int count = rowCount();
    for (int i = 0; i < count; ++i) {
        const int row = (std::max(from, 0) + i) % count;
        if (text(row, column).startsWith(typed, Qt::CaseInsensitive))
            return row;
    }
    return {};
}

// Narrows to the filter line, then sorts what is left.
void BookList::arrange()
{
    std::vector<bool> fits(m_keys.size(), true);
    const QStringList words = m_line.split(u' ', Qt::SkipEmptyParts);
    for (const QString& word : words) {
        std::vector<bool> found(m_keys.size());
        for (const ColumnTexts& column : m_cells) {
            const std::vector<bool> holds = column.holds(word);
            std::transform(found.begin(), found.end(), holds.begin(), found.begin(),
                           std::logical_or<>());
        }
        std::transform(fits.begin(), fits.end(), found.begin(), fits.begin(), std::logical_and<>());
    }
    m_shown.clear();
    for (std::uint32_t row = 0; row < fits.size(); ++row)
        if (fits[row])
            m_shown.push_back(row);
    if (!m_sortColumn)
        return;
    const auto ranks = m_cells[static_cast<std::size_t>(*m_sortColumn)].ranks();
    std::ranges::stable_sort(m_shown, [&](std::uint32_t a, std::uint32_t b) {
        return m_sortOrder == Qt::AscendingOrder ? ranks[a] < ranks[b] : ranks[b] < ranks[a];
    });
}

} // namespace refbooks
