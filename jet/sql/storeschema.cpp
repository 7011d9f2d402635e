#include "jet/sql/storeschema.h"

#include "jet/text.h"

namespace jet::sql {

const StoreSchema::Known* StoreSchema::find(std::string_view table)
{
    std::string key = foldName(table);
    if (const auto known = m_tables.find(key); known != m_tables.end())
        return &known->second;
    if (!m_store.findTable(table))
        return nullptr;
    const TableDef definition = m_store.describe(table);
    Known known{definition.name, {}};
    for (const Field& field : definition.fields) {
        const bool counter = (field.attributes & attribute::kAutoIncrement) != 0;
        known.columns.push_back({field.name, field.type, counter, field.defaultValue});
    }
    return &m_tables.emplace(std::move(key), std::move(known)).first->second;
}

const std::vector<SchemaColumn>* StoreSchema::columns(std::string_view table)
{
    const Known* known = find(table);
    return known ? &known->columns : nullptr;
}

std::string StoreSchema::canonicalName(std::string_view table)
{
    const Known* known = find(table);
    return known ? known->name : std::string(table);
}

} // namespace jet::sql
