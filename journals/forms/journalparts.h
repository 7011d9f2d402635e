#pragma once

#include <functional>

namespace sheets {
struct Table;
}
namespace shell {
class Prompt;
class Session;
class Settings;
class StatusLine;
} // namespace shell

namespace journals {

// What the journal windows work with; all of it outlives them. Requires an open journal.
struct JournalParts
{
    shell::Session& session;
    shell::Settings& settings;
    shell::Prompt& prompt;
    shell::StatusLine& status;
    // Writes the grid to a file that the user names; without it the command is disabled.
    std::function<void(const sheets::Table&)> exportTable = {};
};

} // namespace journals
