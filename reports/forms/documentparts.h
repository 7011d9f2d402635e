#pragma once

#include <QString>

#include <functional>

namespace shell {
class FileChooser;
class ProgramStarter;
class Prompt;
class Session;
class Settings;
class StatusLine;
} // namespace shell

namespace reports {

// What the windows of the reports work with; all of it outlives them. Requires an open journal.
struct DocumentParts
{
    shell::Session& session;
    shell::Settings& settings;
    shell::Prompt& prompt;
    shell::StatusLine& status;
    shell::FileChooser& chooser;
    shell::ProgramStarter& starter;
    // Where documents go. May throw.
    std::function<QString()> documentsFolder;
};

} // namespace reports
