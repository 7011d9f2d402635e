#include "jet/sqltext.h"

#include "jet/error.h"
#include "jet/text.h"

#include <charconv>
#include <cstdio>

namespace jet::sql {

namespace {

constexpr std::size_t kMaxNameLength = 64;

} // namespace

std::string text(std::string_view value)
{
    std::string sql = "\"";
    for (const char c : value) {
        sql += c;
        if (c == '"')
            sql += c;
    }
    return sql + '"';
}

std::string date(DateTime value)
{
    const DateTime::Parts p = value.parts();
    char buffer[64];
    if (p.hour == 0 && p.minute == 0 && p.second == 0)
        std::snprintf(buffer, sizeof buffer, "#%02d/%02d/%04d#", p.month, p.day, p.year);
    else
        std::snprintf(buffer, sizeof buffer, "#%02d/%02d/%04d %02d:%02d:%02d#", p.month, p.day,
                      p.year, p.hour, p.minute, p.second);
    return buffer;
}

std::string number(double value)
{
    char buffer[40];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, error == std::errc() ? end : buffer);
}

std::string number(std::int64_t value)
{
    return std::to_string(value);
}

std::string name(std::string_view value)
{
    bool allowed = !value.empty() && value.front() != ' ' && utf16Length(value) <= kMaxNameLength;
    for (const char c : value)
        allowed = allowed && static_cast<unsigned char>(c) >= ' '
                  && std::string_view(".!`[]").find(c) == std::string_view::npos;
    if (!allowed)
        throw Error(Fault::UnknownName, "недопустимое имя «" + std::string(value) + "»");
    return '[' + std::string(value) + ']';
}

} // namespace jet::sql
