#pragma once

#include "jet/storage/definition.h"

namespace jet::compact {

// The definition that a table gets when it is written anew: columns in the same order, but
// numbers, slots and offsets without the gaps of dropped ones; indexes by the new numbers,
// their pages and maps not yet set. What is counted while rows are written is zero, but the
// last counter value stays.
Definition freshDefinition(const Definition& old, PageNumber page);

// Puts right what a damaged definition says against the format, as far as it can be read all
// the same. Throws Error (Damaged) for a column of unknown type.
void mendDefinition(Definition& definition);

// Takes a real index away with the logical ones that use it.
void removeIndex(Definition& definition, std::size_t real);

// Makes an index one that belongs to no relationship.
void forgetPartner(LogicalIndex& index);

} // namespace jet::compact
