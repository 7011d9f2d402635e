#pragma once

#include "jet/value.h"

#include <nlohmann/json_fwd.hpp>

#include <iosfwd>
#include <string>
#include <vector>

namespace cli {

using Row = std::vector<std::string>;

// A value as text: dates YYYY-MM-DD[ HH:MM:SS], Booleans -1 and 0, binary in hexadecimal.
std::string plainText(const jet::Value& value);
// The same for JSON, where null, Booleans and numbers are themselves. Scaled decimals stay
// texts, since a JSON number would lose digits.
nlohmann::ordered_json jsonValue(const jet::Value& value);

// Columns padded to one width, a header line, then a line of dashes.
void printAligned(std::ostream& out, const Row& header, const std::vector<Row>& rows);
// As RFC 4180: texts with commas, quotes or line breaks stand in quotes.
void printCsv(std::ostream& out, const Row& header, const std::vector<Row>& rows);
// One document on one line. Bytes that are no UTF-8 become U+FFFD.
void printJson(std::ostream& out, const nlohmann::ordered_json& document);

} // namespace cli
