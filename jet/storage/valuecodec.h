#pragma once

#include "jet/storage/bytes.h"
#include "jet/storage/definition.h"
#include "jet/value.h"

#include <optional>

namespace jet {

// Items of a row for every type but Boolean (the null mask) and Memo and LongBinary
// (longvalue.h).
//
//   Byte u8, Integer i16, Long i32, Currency i64 (value * 10000), Single f32, Double f64,
//   Date f64 days: little-endian
//   GUID: u32, u16, u16 little-endian, then 8 bytes as printed
//   Decimal: 80 for negative, then four u32 little-endian, most significant first
//   Binary, Block: the bytes. Text: textcodec.h

// Bytes of a type of fixed size, else 0.
std::size_t storedSize(FieldType type);

// Nothing when the item is too short for its type.
std::optional<Value> decodeItem(const ColumnDefinition& column, ByteView item);

// Appends the item of a value that convertValue() made for the column.
void appendItem(Bytes& out, const ColumnDefinition& column, const Value& value);

} // namespace jet
