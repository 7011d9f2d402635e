#pragma once

#include "jet/sql/translation.h"
#include "jet/storage/store.h"

#include <map>
#include <string>
#include <vector>

namespace jet::sql {

// The tables of a store as the translator asks for them; remembered until clear().
class StoreSchema final : public SchemaLookup
{
public:
    explicit StoreSchema(Store& store)
        : m_store(store)
    {}

    const std::vector<SchemaColumn>* columns(std::string_view table) override;
    std::string canonicalName(std::string_view table) override;
    void clear() { m_tables.clear(); }

private:
    struct Known
    {
        std::string name;
        std::vector<SchemaColumn> columns;
    };
    const Known* find(std::string_view table);

    Store& m_store;
    std::map<std::string, Known> m_tables; // by folded name
};

} // namespace jet::sql
