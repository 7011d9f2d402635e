#pragma once

#include "jet/storage/compact/losses.h"
#include "jet/storage/compact/sourcecatalogue.h"
#include "jet/storage/compact/tablecopy.h"
#include "jet/storage/pager.h"
#include "jet/value.h"

#include <cstdint>
#include <map>

namespace jet::compact {

// What changes in rows of system tables on their way: object numbers of tables are pages of
// their definitions and so get new values wherever they stand. A repair also leaves out rows
// about objects that are no more.
class ObjectRules
{
public:
    // `catalogue` must outlive the object; its tables have their new pages.
    ObjectRules(const SourceCatalogue& catalogue, Losses& losses, std::uint32_t sidKey);

    // None for tables whose rows are copied as they are. The rule must not outlive the table.
    RowRule of(const SourceTable& table) const;

private:
    std::uint32_t newNumber(std::uint32_t old) const;
    void renumber(RowCopy& row, int column) const;
    bool keepObject(const Definition& definition, RowPointer place, RowCopy& row) const;
    void repairObject(const Definition& definition, RowPointer place, RowCopy& row) const;
    bool keepPermission(const Definition& definition, RowPointer place, RowCopy& row) const;
    bool keepQuery(const Definition& definition, RowPointer place, RowCopy& row) const;
    bool keepRelation(const Definition& definition, RowPointer place, RowCopy& row) const;
    bool isKnownSid(const Value& coded) const;
    bool refersTo(const RowCopy& row, int column) const;

    const SourceCatalogue& m_catalogue;
    Losses& m_losses;
    std::uint32_t m_sidKey;
    std::map<std::uint32_t, PageNumber> m_newNumbers;
};

} // namespace jet::compact
