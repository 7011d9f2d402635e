#include "cli/output.h"

#include "data/convert.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ostream>

namespace cli {

namespace {

std::string isoDate(jet::DateTime value)
{
    const auto p = value.parts();
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04d-%02d-%02d", p.year, p.month, p.day);
    std::string text = buffer.data();
    if (p.hour != 0 || p.minute != 0 || p.second != 0) {
        std::snprintf(buffer.data(), buffer.size(), " %02d:%02d:%02d", p.hour, p.minute, p.second);
        text += buffer.data();
    }
    return text;
}

std::string hexadecimal(const jet::Bytes& bytes)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0x0F];
    }
    return text;
}

// Characters as a terminal counts them, near enough for Cyrillic and Latin.
std::size_t width(const std::string& text)
{
    return static_cast<std::size_t>(data::fromUtf8(text).size());
}

std::string onOneLine(std::string text)
{
    std::ranges::replace(text, '\n', ' ');
    std::erase(text, '\r');
    return text;
}

void printLine(std::ostream& out, const Row& cells, const std::vector<std::size_t>& widths)
{
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += cells[i];
        if (i + 1 < cells.size())
            line.append(widths[i] - width(cells[i]) + 2, ' ');
    }
    out << line << '\n';
}

std::string csvCell(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

void printCsvLine(std::ostream& out, const Row& cells)
{
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i)
        line += (i == 0 ? "" : ",") + csvCell(cells[i]);
    out << line << "\r\n";
}

} // namespace

std::string plainText(const jet::Value& value)
{
    if (const auto* date = value.as<jet::DateTime>())
        return isoDate(*date);
    if (const auto* bytes = value.as<jet::Bytes>())
        return hexadecimal(*bytes);
    return value.toText();
}

nlohmann::ordered_json jsonValue(const jet::Value& value)
{
    if (value.isNull())
        return nullptr;
    if (const auto* flag = value.as<bool>())
        return *flag;
    if (const auto* number = value.as<std::int64_t>())
        return *number;
    if (value.as<double>() || value.as<jet::Currency>())
        return value.toDouble();
    return plainText(value);
}

void printAligned(std::ostream& out, const Row& header, const std::vector<Row>& rows)
{
    std::vector<Row> lines = rows;
    std::vector<std::size_t> widths;
    for (const std::string& title : header)
        widths.push_back(width(title));
    for (Row& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i) {
            line[i] = onOneLine(line[i]);
            widths[i] = std::max(widths[i], width(line[i]));
        }
    Row dashes;
    for (const std::size_t one : widths)
        dashes.emplace_back(one, '-');
    printLine(out, header, widths);
    printLine(out, dashes, widths);
    for (const Row& line : lines)
        printLine(out, line, widths);
}

void printCsv(std::ostream& out, const Row& header, const std::vector<Row>& rows)
{
    printCsvLine(out, header);
    for (const Row& row : rows)
        printCsvLine(out, row);
}

void printJson(std::ostream& out, const nlohmann::ordered_json& document)
{
    out << document.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

} // namespace cli
