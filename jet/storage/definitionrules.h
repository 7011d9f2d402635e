#pragma once

#include "jet/storage/definition.h"
#include "jet/tabledef.h"

#include <cstddef>
#include <string>
#include <string_view>

// What the format allows in a table definition. Each throws Error (Limit, Exists,
// UnknownName, Unsupported) with a clause that names the offender.
namespace jet::rules {

inline constexpr std::size_t kMaxColumns = 255;
inline constexpr std::size_t kMaxIndexes = 32;
inline constexpr std::size_t kMaxIndexColumns = 10;
inline constexpr std::size_t kMaxNameLength = 64;
inline constexpr std::size_t kMaxRowBytes = 4060; // long values count with their header only

// 1 to 64 characters, none of . ! ` [ ] and controls, no space in front. `what` is "таблицы",
// "поля" or "индекса".
void checkName(std::string_view name, std::string_view what);
// Type and size are ones that a column can have.
void checkField(const Field& field);
// The fields exist once each and can be indexed; no second primary key, no second name.
void checkIndex(const Index& index, const Definition& definition);
// An empty row of the table fits on a page.
void checkRowSize(const Definition& definition);

} // namespace jet::rules
