#pragma once

#include <QString>

#include <functional>

namespace sheets {
struct Table;
}

namespace shell {

class FileChooser;
class Prompt;
class StatusLine;

// Writes a table that a window shows to a file that the user names. All of it outlives the
// object.
class TableExport final
{
public:
    // `folder` gives where exported files go; it may throw.
    TableExport(FileChooser& chooser, Prompt& prompt, StatusLine& status,
                std::function<QString()> folder);

    // Failures are told to the user.
    void write(const sheets::Table& table) const;

private:
    FileChooser& m_chooser;
    Prompt& m_prompt;
    StatusLine& m_status;
    std::function<QString()> m_folder;
};

} // namespace shell
