#pragma once

#include "jet/value.h"

#include <nlohmann/json_fwd.hpp>

#include <iosfwd>
#include <string>
#include <string_view>
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
// Lines as RFC 4180: texts with commas, quotes or line breaks stand in quotes. Buffers what
// it writes until it is destroyed.
class CsvWriter
{
public:
    explicit CsvWriter(std::ostream& out)
        : m_out(out)
    {}
    CsvWriter(const CsvWriter&) = delete;
    CsvWriter& operator=(const CsvWriter&) = delete;
    ~CsvWriter();

    void add(const jet::Value& value); // as plainText() has it
    void endLine();

private:
    void addText(std::string_view text);
    void flush();

    std::ostream& m_out;
    std::string m_buffer;
    bool m_lineStarted = false;
};

// One document on one line. Bytes that are no UTF-8 become U+FFFD.
void printJson(std::ostream& out, const nlohmann::ordered_json& document);

} // namespace cli
