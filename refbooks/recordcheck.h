#pragma once

#include "refbooks/recorddraft.h"

#include <string>

namespace jet {
class Database;
}
namespace shell {
class Prompt;
class Session;
} // namespace shell

namespace refbooks {

struct Phrase;

// Checks a record before it is stored, step by step in a fixed order; the first failure is
// told and ends it. Doubts are questions: Yes stores all the same.
class RecordCheck
{
public:
    // Requires an open session.
    RecordCheck(const RecordDraft& draft, shell::Session& session, shell::Prompt& prompt);

    // The field to go back to; nothing when the record may be stored. Throws jet::Error.
    std::optional<int> failedField();

private:
    using Failed = std::optional<int>;

    Failed required();
    Failed unique();
    Failed passwords();
    Failed projectDates();
    Failed datesInOrder();
    Failed wholeNumbers();
    Failed workloadTwice();
    Failed holidays();
    Failed groupTwice();
    Failed lessonNumberTwice();
    Failed birthDate();
    Failed columns();

    bool isBook(Book book) const { return m_draft.book == book; }
    bool isTaken(const RecordField& field, const QString& value); // by another row
    // " AND ((TABLE.KEY)<>key)" when a row is edited, so that it does not meet itself.
    std::string otherRows() const;
    Failed refuse(const QString& text, int field);
    Failed refuse(const QString& text, std::string_view field);
    Failed ask(const QString& text, std::string_view field);
    jet::Database& database();

    const RecordDraft& m_draft;
    shell::Session& m_session;
    shell::Prompt& m_prompt;
};

} // namespace refbooks
