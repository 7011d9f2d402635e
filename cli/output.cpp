#include "cli/output.h"

#include "data/convert.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <ostream>

namespace cli {

namespace {

void appendTwoDigits(std::string& text, int number)
{
    text += static_cast<char>('0' + number / 10);
    text += static_cast<char>('0' + number % 10);
}

// Written by hand: exports spend their time here.
void appendIsoDate(std::string& text, jet::DateTime value)
{
    const auto p = value.parts();
    appendTwoDigits(text, p.year / 100);
    appendTwoDigits(text, p.year % 100);
    appendTwoDigits(text += '-', p.month);
    appendTwoDigits(text += '-', p.day);
    if (p.hour == 0 && p.minute == 0 && p.second == 0)
        return;
    appendTwoDigits(text += ' ', p.hour);
    appendTwoDigits(text += ':', p.minute);
    appendTwoDigits(text += ':', p.second);
}

void appendInteger(std::string& text, std::int64_t value)
{
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    text.append(digits.data(), end);
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

} // namespace

std::string plainText(const jet::Value& value)
{
    if (const auto* date = value.as<jet::DateTime>()) {
        std::string text;
        appendIsoDate(text, *date);
        return text;
    }
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

CsvWriter::~CsvWriter()
{
    flush();
}

void CsvWriter::add(const jet::Value& value)
{
    if (m_lineStarted)
        m_buffer += ',';
    m_lineStarted = true;
    if (const auto* number = value.as<std::int64_t>())
        appendInteger(m_buffer, *number);
    else if (const auto* date = value.as<jet::DateTime>())
        appendIsoDate(m_buffer, *date);
    else if (const auto* flag = value.as<bool>())
        m_buffer += *flag ? "-1" : "0";
    else if (const auto* text = value.as<std::string>())
        addText(*text);
    else if (!value.isNull())
        addText(plainText(value));
}

void CsvWriter::addText(std::string_view text)
{
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        m_buffer += text;
        return;
    }
    m_buffer += '"';
    for (const char c : text) {
        if (c == '"')
            m_buffer += '"';
        m_buffer += c;
    }
    m_buffer += '"';
}

void CsvWriter::endLine()
{
    constexpr std::size_t kEnough = 65536;
    m_buffer += "\r\n";
    m_lineStarted = false;
    if (m_buffer.size() >= kEnough)
        flush();
}

void CsvWriter::flush()
{
    m_out.write(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
    m_buffer.clear();
}

void printJson(std::ostream& out, const nlohmann::ordered_json& document)
{
    out << document.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

} // namespace cli
