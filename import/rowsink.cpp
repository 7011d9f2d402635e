#include "import/rowsink.h"

#include "jet/sqltext.h"

namespace imports {
namespace {

std::string asSql(const jet::Value& value)
{
    if (value.isNull())
        return "NULL";
    if (const auto* text = value.as<std::string>())
        return jet::sql::text(*text);
    if (const auto* date = value.as<jet::DateTime>())
        return jet::sql::date(*date);
    if (const auto* number = value.as<std::int64_t>())
        return jet::sql::number(*number);
    return jet::sql::number(value.toDouble());
}

} // namespace

std::int64_t JournalSink::add(std::string_view table, std::span<const std::string> fields,
                              std::span<const jet::Value> values)
{
    auto appender = m_appenders.find(table);
    if (appender == m_appenders.end())
        appender =
            m_appenders.emplace(std::string(table), jet::Appender(m_database, table, fields)).first;
    return appender->second.append(values);
}

void JournalSink::update(std::string_view table, std::string_view keyField, std::int64_t key,
                         std::span<const FieldValue> values)
{
    std::string changes;
    for (const auto& [field, value] : values) {
        changes += changes.empty() ? "" : ", ";
        changes += jet::sql::name(field) + " = ";
        changes += asSql(value);
    }
    m_database.execute("UPDATE " + jet::sql::name(table) + " SET " + changes + " WHERE "
                       + jet::sql::name(keyField) + " = " + jet::sql::number(key) + ';');
}

} // namespace imports
