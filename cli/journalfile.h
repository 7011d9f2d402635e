#pragma once

#include "cli/terminalprompt.h"
#include "data/journal.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace cli {

// Opens a journal as the desktop program does. Throws Failure with the message it refused by.
std::unique_ptr<data::Journal> openJournal(const std::string& path, TerminalPrompt& prompt);
std::unique_ptr<data::Journal> createJournal(const std::string& path, TerminalPrompt& prompt);

// The text in the vocabulary that the user's settings ask for.
std::string worded(const QString& text);

// What the command line calls `text`: a key, or the exact name of one row. Throws Failure
// when there is none or the name is not unique.
std::int64_t findGroup(jet::Database& database, const std::string& text);
std::int64_t findDiscipline(jet::Database& database, const std::string& text);
std::int64_t findSpeciality(jet::Database& database, const std::string& text);
// Throws Failure when there is no student of that key.
void requireStudent(jet::Database& database, std::int64_t student);

// "2024-11-30"; throws Failure for any other text.
QDate dateArgument(const std::string& text);

} // namespace cli
