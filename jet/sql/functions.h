#pragma once

#include "jet/sql/functioncall.h"

#include <span>
#include <string>
#include <string_view>

// The functions that translated texts call as `jet_` + name; what they take and give is
// listed in jet/sql/functionnames.h.
namespace jet::sql {

std::span<const Function> textFunctions();
std::span<const Function> numberFunctions();
std::span<const Function> dateFunctions();
std::span<const Function> conversionFunctions();

// All of the above and the aggregates.
void registerAllFunctions(sqlite3* connection, ErrorSlot& errors);
void registerAggregates(sqlite3* connection, ErrorSlot& errors);

// Jet's LIKE: * any characters, ? one, # one digit, [a-z] one of, [!a-z] none of. Letters
// match in both cases, "е" and "ё" are two letters. Throws Error (Syntax) for a pattern with
// an open bracket.
bool matchesPattern(std::string_view text, std::string_view pattern);

// The function Format. Patterns are the named ones ("Fixed", "Short Date", ...) or made of
// placeholders; separators are those of the Russian settings, so that "." stands between
// date parts for "/" and a comma before decimals for ".".
std::string formatNumber(double value, std::string_view pattern);
std::string formatDate(DateTime value, std::string_view pattern);
// True when a pattern shows dates or times and not numbers.
bool isDatePattern(std::string_view pattern);
bool isNamedNumberPattern(std::string_view pattern);

} // namespace jet::sql
