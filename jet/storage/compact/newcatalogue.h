#pragma once

#include "jet/storage/compact/losses.h"
#include "jet/storage/compact/tablecopy.h"
#include "jet/storage/pager.h"
#include "jet/storage/usagemap.h"

#include <vector>

namespace jet::compact {

// What concerns several tables of the new file at once.

// Makes the indexes of relationships name the new pages of each other's tables. `fresh` are
// the definitions of the tables, in their order. An index without a partner becomes an
// ordinary one, which is a loss.
void settlePartners(const std::vector<SourceTable>& tables, std::vector<Definition>& fresh,
                    Losses& losses);

// After a repair: objects that every database has, rows for tables that the catalogue did
// not know, and permissions for these and for tables that have none. Requires that all
// definitions were written.
void completeCatalogue(Pager& target, PageAllocator& allocator,
                       const std::vector<SourceTable>& tables);

} // namespace jet::compact
