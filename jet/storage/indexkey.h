#pragma once

#include "jet/storage/definition.h"
#include "jet/value.h"

#include <span>

namespace jet {

// Bytes of an index entry's key (row pointer not included) for the values of its columns,
// in index order. Throws Error (Unsupported) for text that has no known key, for a
// collation other than General and for types that cannot be indexed.
// `columns` and `values` are parallel; descending[i] inverts as the format asks.
Bytes encodeIndexKey(std::span<const ColumnDefinition* const> columns,
                     std::span<const bool> descending, std::span<const Value> values);

// As above for one ascending or descending value: flag byte and value bytes.
void appendIndexKey(Bytes& key, const ColumnDefinition& column, bool descending,
                    const Value& value);

} // namespace jet
