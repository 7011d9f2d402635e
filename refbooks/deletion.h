#pragma once

#include "refbooks/catalogue.h"
#include "refbooks/phrase.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <span>

namespace jet {
class Database;
}
namespace shell {
class Prompt;
class Session;
class StatusLine;
} // namespace shell

namespace refbooks {

struct DeletionRule;

// Deletes rows of the reference books: asks, refuses rows that are in use or protected, and
// tells about each. Every row goes by one durable step of its own; what is deleted stays
// deleted when a later row is refused.
class Deletion
{
public:
    // Requires an open session.
    Deletion(shell::Session& session, shell::Prompt& prompt, shell::StatusLine& status);

    // The selected rows of a book, in list order; the list is to be filled anew afterwards.
    // Gives the number of rows deleted, 0 for the lessons, which no rule covers. Throws
    // jet::Error; what was deleted before stays so.
    int deleteSelected(Book book, std::span<const std::int64_t> keys);

private:
    void deleteRows(const DeletionRule& rule, std::span<const std::int64_t> keys);
    // Why the row may not be deleted, nothing when it may.
    std::optional<QString> refusal(const DeletionRule& rule, std::int64_t key);
    std::optional<QString> specialRefusal(const DeletionRule& rule, std::int64_t key);
    std::optional<QString> userRefusal(std::int64_t key);
    bool lessonsOfLink(std::int64_t workload);
    // True when the row is gone.
    bool deleteRow(const DeletionRule& rule, std::int64_t key);
    bool deleteWorkload(const DeletionRule& rule, std::int64_t key);
    bool deleteStudent(const DeletionRule& rule, std::int64_t key);
    QString named(const DeletionRule& rule, std::int64_t key, const Phrase& phrase);
    jet::Database& database();

    shell::Session& m_session;
    shell::Prompt& m_prompt;
    shell::StatusLine& m_status;
    int m_deleted = 0;
};

} // namespace refbooks
