#include "jet/sql/fragment.h"

#include <charconv>

namespace jet::sql {

namespace {

std::string doubled(std::string_view text, char quote)
{
    std::string result(1, quote);
    for (const char c : text) {
        result += c;
        if (c == quote)
            result += c;
    }
    return result + quote;
}

} // namespace

std::string quotedName(std::string_view name)
{
    return doubled(name, '"');
}

std::string quotedText(std::string_view text)
{
    // SQLite ends a statement at a zero byte.
    if (text.find('\0') == std::string_view::npos)
        return doubled(text, '\'');
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string hex;
    for (const char c : text) {
        hex += kDigits[static_cast<unsigned char>(c) >> 4];
        hex += kDigits[static_cast<unsigned char>(c) & 15];
    }
    return "CAST(x'" + hex + "' AS TEXT)";
}

std::string realLiteral(double value)
{
    char buffer[40];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    std::string text(buffer, error == std::errc() ? end : buffer);
    if (text.find_first_of(".e") == std::string::npos)
        text += ".0";
    return text;
}

std::string bracketed(const Fragment& fragment, Binding least)
{
    return fragment.binding < least ? '(' + fragment.sql + ')' : fragment.sql;
}

Fragment asValue(Fragment fragment)
{
    if (!fragment.condition)
        return fragment;
    return {"-(" + fragment.sql + ')', Binding::Sign, FieldType::Boolean, false, ColumnOf::Nothing};
}

std::string asTruth(const Fragment& fragment)
{
    if (fragment.condition)
        return '(' + fragment.sql + ')';
    return '(' + bracketed(fragment, Binding::Sum) + " <> 0)";
}

Fragment collated(Fragment fragment)
{
    const bool declared = fragment.column == ColumnOf::Table && isText(fragment.type);
    const bool mayBeText = !fragment.type || isText(fragment.type);
    if (declared || !mayBeText || fragment.condition || fragment.binding == Binding::Collation)
        return fragment;
    fragment.sql = bracketed(fragment, Binding::Sign) + " COLLATE JET";
    fragment.binding = Binding::Collation;
    fragment.column = ColumnOf::Nothing;
    return fragment;
}

Fragment conditionOf(std::string sql, Binding binding)
{
    return {std::move(sql), binding, FieldType::Boolean, true, ColumnOf::Nothing};
}

Fragment callOf(std::string_view name, const std::vector<Fragment>& arguments, Type type)
{
    std::string sql = "jet_" + std::string(name) + '(';
    for (const Fragment& argument : arguments) {
        if (&argument != &arguments.front())
            sql += ", ";
        sql += argument.sql;
    }
    return {sql + ')', Binding::Atom, type, false, ColumnOf::Nothing};
}

} // namespace jet::sql
