#include "jet/sql/defaultvalue.h"

#include "jet/error.h"
#include "jet/sql/parser.h"

#include <algorithm>

namespace jet::sql {

namespace {

std::string inQuotes(std::string_view text)
{
    std::string out = "\"";
    for (const char c : text)
        out += c == '"' ? "\"\"" : std::string(1, c);
    return out + '"';
}

bool isExpression(std::string_view text)
{
    try {
        return Parser(text).wholeExpression()->kind != ExpressionKind::Column;
    } catch (const Error& error) {
        if (error.fault() != Fault::Syntax)
            throw;
        return false;
    }
}

} // namespace

std::string defaultExpression(std::string_view stored)
{
    std::string_view text = stored;
    text.remove_prefix(std::min(text.find_first_not_of(" ="), text.size()));
    return isExpression(text) ? std::string(text) : inQuotes(stored);
}

} // namespace jet::sql
