#include "jet/sql/rowlist.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <variant>

namespace jet::sql {

namespace {

bool isAlike(FieldType type)
{
    switch (type) {
    case FieldType::Boolean:
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Date:
    case FieldType::Text:
    case FieldType::Memo:
        return true;
    default:
        return false;
    }
}

} // namespace

bool RowList::isEnoughFor(const Statement& statement)
{
    const auto* query = std::get_if<Query>(&statement);
    if (!query || query->parts.size() != 1 || !query->orderBy.empty())
        return false;
    const Select& select = query->parts.front();
    const auto isColumn = [](const SelectItem& item) {
        return !item.expression || item.expression->kind == ExpressionKind::Column;
    };
    return select.from.size() == 1 && !select.from.front().table.empty() && !select.where
           && select.groupBy.empty() && !select.having && !select.distinct && !select.distinctRow
           && !select.top && std::ranges::all_of(select.items, isColumn);
}

std::optional<RowList> RowList::of(const PreparedStatement& select, Store& store)
{
    if (!select.listsRows)
        return std::nullopt;
    Table& table = store.table(select.translation.tables.front());
    const Definition& definition = table.definition();
    RowList list;
    for (const ResultColumn& column : select.translation.columns) {
        const int position = definition.columnPosition(column.field);
        if (position < 0)
            return std::nullopt;
        const FieldType type = definition.columns[static_cast<std::size_t>(position)].type();
        if (!isAlike(type))
            return std::nullopt;
        list.m_columns.push_back({position, type});
    }
    list.m_scan = table.scan();
    return list;
}

Value RowList::value(int column) const
{
    const auto [position, type] = m_columns[static_cast<std::size_t>(column)];
    const RowView& row = m_scan.row();
    if (row.isNull(position))
        return {};
    switch (type) {
    case FieldType::Boolean:
        return row.integer(position) != 0;
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        return row.integer(position);
    case FieldType::Single:
    case FieldType::Double:
    case FieldType::Date: {
        const double number = row.number(position);
        if (std::isnan(number))
            return {}; // as SQLite has it
        return type == FieldType::Date ? Value(DateTime{number}) : Value(number);
    }
    default: {
        std::string text;
        row.text(position, text);
        return text;
    }
    }
}

} // namespace jet::sql
