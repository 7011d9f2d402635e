#pragma once

class QWidget;

namespace shell {
class FileChooser;
class Prompt;
class Session;
class Settings;
class StatusLine;
} // namespace shell

namespace imports {

// What the import works with; all of it outlives it. Requires an open journal.
struct ImportParts
{
    shell::Session& session;
    shell::Settings& settings;
    shell::Prompt& prompt;
    shell::StatusLine& status;
    shell::FileChooser& chooser;
};

// Asks for the timetable's file and opens the import of its lessons. True when rows were
// imported. Throws nothing.
bool importTimetable(const ImportParts& parts, QWidget* parent);

} // namespace imports
