#pragma once

#include "jet/storage/definition.h"
#include "jet/storage/sortkey.h"
#include "jet/value.h"

#include <span>

namespace jet {

// Bytes of an index entry's key (row pointer not included) for the values of its columns,
// in index order. Each column gives 00 (descending FF) for NULL, else 7F (80) and bytes
// whose unsigned order is the column's order.
//
// Throws Error (Unsupported) for text that has no known key, for a collation other than
// General and for types that cannot be indexed; Error (Type) for a value of another kind
// than the column's. `columns`, `descending` and `values` are parallel.
Bytes encodeIndexKey(std::span<const ColumnDefinition* const> columns,
                     std::span<const bool> descending, std::span<const Value> values,
                     TwoLetterCount twoLetters = TwoLetterCount::Two);

// As above for one ascending or descending value: flag byte and value bytes.
void appendIndexKey(Bytes& key, const ColumnDefinition& column, bool descending, const Value& value,
                    TwoLetterCount twoLetters = TwoLetterCount::Two);

// True when keys of a Text or Memo column can be computed: the General order, version 0.
bool hasKnownTextOrder(const ColumnDefinition& column);

} // namespace jet
