#include "import/sourcetable.h"

#include "jet/database.h"
#include "jet/error.h"
#include "jet/sqltext.h"
#include "jet/text.h"

#include <algorithm>

namespace imports {

bool hasField(jet::Database& database, std::string_view table, std::string_view field)
{
    return std::ranges::any_of(database.tableDef(table).fields, [&](const jet::Field& each) {
        return jet::sameName(each.name, field);
    });
}

void requireFields(jet::Database& database, const SourceFields& fields)
{
    const std::string table(fields.table);
    if (!database.hasTable(table))
        throw jet::Error(jet::Fault::UnknownName, "в базе данных нет таблицы " + table);
    for (const std::string_view field : fields.required)
        if (!hasField(database, table, field))
            throw jet::Error(jet::Fault::UnknownName,
                             "в таблице " + table + " базы данных нет поля " + std::string(field));
}

SourceTable::SourceTable(jet::Database& database, const SourceFields& fields, std::string_view rest)
{
    requireFields(database, fields);
    m_present.assign(fields.required.size(), true);
    std::string list;
    const auto add = [&list](std::string_view field) {
        list += (list.empty() ? "" : ", ") + jet::sql::name(field);
    };
    for (const std::string_view field : fields.required)
        add(field);
    for (const std::string_view field : fields.optional) {
        m_present.push_back(hasField(database, fields.table, field));
        if (m_present.back())
            add(field);
    }
    auto rows = database.query("SELECT " + list + " FROM " + jet::sql::name(fields.table)
                               + std::string(rest) + ';');
    for (; rows.next(); ++m_rows) {
        int column = 0;
        for (const bool present : m_present)
            m_values.push_back(present ? rows.value(column++) : jet::Value());
    }
}

RowsByKey::RowsByKey(const SourceTable& table, std::size_t keyField)
{
    for (std::size_t row = 0; row < table.size(); ++row)
        if (const jet::Value& key = table.value(row, keyField); !key.isNull())
            m_rows.emplace(key.toInteger(), static_cast<int>(row));
}

int RowsByKey::row(const jet::Value& key) const
{
    if (key.isNull())
        return kNone;
    const auto found = m_rows.find(key.toInteger());
    return found == m_rows.end() ? kNone : found->second;
}

} // namespace imports
