#pragma once

#include "jet/database.h"

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace imports {

using FieldValue = std::pair<std::string_view, jet::Value>;

// Where imported rows go: the journal, or nowhere when an import is only tried.
class RowSink
{
public:
    virtual ~RowSink() = default;
    // Gives the key of the new row. A table is always given with the same fields.
    virtual std::int64_t add(std::string_view table, std::span<const std::string> fields,
                             std::span<const jet::Value> values) = 0;
    virtual void update(std::string_view table, std::string_view keyField, std::int64_t key,
                        std::span<const FieldValue> values) = 0;
};

// Throws jet::Error for what a table does not take.
class JournalSink final : public RowSink
{
public:
    explicit JournalSink(jet::Database& database)
        : m_database(database)
    {}
    std::int64_t add(std::string_view table, std::span<const std::string> fields,
                     std::span<const jet::Value> values) override;
    void update(std::string_view table, std::string_view keyField, std::int64_t key,
                std::span<const FieldValue> values) override;

private:
    jet::Database& m_database;
    std::map<std::string, jet::Appender, std::less<>> m_appenders;
};

// Gives keys that no stored row has.
class TrialSink final : public RowSink
{
public:
    std::int64_t add(std::string_view, std::span<const std::string>,
                     std::span<const jet::Value>) override
    {
        return --m_key;
    }
    void update(std::string_view, std::string_view, std::int64_t,
                std::span<const FieldValue>) override
    {}

private:
    std::int64_t m_key = INT32_MIN; // keys in the file have 32 bits
};

} // namespace imports
