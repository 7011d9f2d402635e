#include "import/targetbook.h"

#include "jet/sqltext.h"
#include "jet/storage/sortkey.h"
#include "jet/text.h"

#include <cstring>
#include <utility>

namespace imports {
namespace {

// The longest beginning of a text that has at most `units` UTF-16 units.
std::string beginning(const std::string& text, std::size_t units)
{
    std::size_t at = 0;
    std::size_t used = 0;
    while (at < text.size()) {
        const std::size_t begin = at;
        used += jet::nextCodePoint(text, at) > 0xFFFF ? 2U : 1U;
        if (used > units)
            return text.substr(0, begin);
    }
    return text;
}

void appendNumber(std::string& key, std::int64_t number)
{
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    key.append(bytes, sizeof bytes);
}

} // namespace

TargetBook::TargetBook(jet::Database& database, const BookLayout& layout, RowSink& sink)
    : m_layout(layout)
    , m_sink(sink)
{
    for (const MatchedField& field : m_layout.matched)
        m_fields.emplace_back(field.name);
    for (const std::string_view field : m_layout.carried)
        m_fields.emplace_back(field);
    const jet::TableDef definition = database.tableDef(m_layout.table);
    for (const jet::Field& field : definition.fields)
        for (const std::string& name : m_fields)
            if (field.type == jet::FieldType::Text && jet::sameName(field.name, name))
                m_sizes.emplace(name, static_cast<std::size_t>(field.size));
    read(database);
}

void TargetBook::read(jet::Database& database)
{
    std::string list = jet::sql::name(m_layout.key);
    for (const std::string& field : m_fields)
        list += ", " + jet::sql::name(field);
    auto rows = database.query("SELECT " + list + " FROM " + jet::sql::name(m_layout.table) + ';');
    while (rows.next()) {
        int column = 0;
        Row row{rows.integer(column++), false, false, {}, {}};
        Matched matched;
        for (std::size_t i = 0; i < m_layout.matched.size(); ++i)
            matched.push_back(rows.value(column++));
        for (std::size_t i = 0; i < m_layout.carried.size(); ++i)
            row.stored.push_back(rows.value(column++));
        row.wanted = row.stored;
        m_byName.emplace(naturalKey(matched), m_rows.size());
        m_byKey.emplace(row.key, m_rows.size());
        m_rows.push_back(std::move(row));
    }
}

// A text as its length and sort key, a number as its bytes.
std::string TargetBook::naturalKey(const Matched& matched) const
{
    std::string key;
    for (std::size_t i = 0; i < matched.size(); ++i) {
        if (!m_layout.matched[i].isText) {
            appendNumber(key, matched[i].toInteger());
            continue;
        }
        const jet::Bytes text = jet::generalSortKey(matched[i].toText());
        appendNumber(key, std::ssize(text));
        key.append(text.begin(), text.end());
    }
    return key;
}

bool TargetBook::fit(jet::Value& value, std::string_view field) const
{
    const auto size = m_sizes.find(field);
    const auto* text = value.as<std::string>();
    if (!text || size == m_sizes.end() || jet::utf16Length(*text) <= size->second)
        return true;
    value = beginning(*text, size->second);
    return false;
}

void TargetBook::fitMatched(Matched& matched) const
{
    for (std::size_t i = 0; i < matched.size(); ++i)
        fit(matched[i], m_layout.matched[i].name);
}

std::optional<std::int64_t> TargetBook::find(Matched matched) const
{
    fitMatched(matched);
    const auto found = m_byName.find(naturalKey(matched));
    return found == m_byName.end() ? std::nullopt : std::optional(m_rows[found->second].key);
}

void TargetBook::carry(Row& row, std::size_t field, jet::Value value)
{
    if (!fit(value, m_layout.carried[field]))
        ++m_shortened;
    row.wanted[field] = std::move(value);
}

std::size_t TargetBook::addRow(const Matched& matched, const Carried& carried)
{
    Row row{0, true, true, {}, std::vector<jet::Value>(carried.size())};
    for (std::size_t i = 0; i < carried.size(); ++i)
        if (carried[i])
            carry(row, i, *carried[i]);
    row.stored = row.wanted;
    std::vector<jet::Value> values = matched;
    values.insert(values.end(), row.wanted.begin(), row.wanted.end());
    row.key = m_sink.add(m_layout.table, m_fields, values);
    m_byKey.emplace(row.key, m_rows.size());
    m_rows.push_back(std::move(row));
    return m_rows.size() - 1;
}

std::int64_t TargetBook::take(Matched matched, const Carried& carried)
{
    for (std::size_t i = 0; i < matched.size(); ++i)
        if (!fit(matched[i], m_layout.matched[i].name))
            ++m_shortened;
    std::string name = naturalKey(matched);
    const auto found = m_byName.find(name);
    if (found == m_byName.end()) {
        const std::size_t added = addRow(matched, carried);
        m_byName.emplace(std::move(name), added);
        return m_rows[added].key;
    }
    Row& row = m_rows[found->second];
    row.isTaken = true;
    for (std::size_t i = 0; i < carried.size(); ++i)
        if (carried[i])
            carry(row, i, *carried[i]);
    return row.key;
}

void TargetBook::set(std::int64_t key, std::size_t carried, const jet::Value& value)
{
    carry(m_rows[m_byKey.at(key)], carried, value);
}

RowCounts TargetBook::finish()
{
    RowCounts counts;
    for (const Row& row : m_rows) {
        if (!row.isTaken)
            continue;
        std::vector<FieldValue> changes;
        for (std::size_t i = 0; i < row.wanted.size(); ++i)
            if (row.wanted[i] != row.stored[i])
                changes.emplace_back(m_layout.carried[i], row.wanted[i]);
        if (!changes.empty())
            m_sink.update(m_layout.table, m_layout.key, row.key, changes);
        ++(row.isAdded ? counts.added : changes.empty() ? counts.unchanged : counts.updated);
    }
    return counts;
}

} // namespace imports
