#pragma once

#include "shell/files/archive.h"

#include <QString>

#include <optional>

namespace jet {
struct CompactReport;
}

namespace shell {

class FileCommands;
class LongWork;
class Prompt;
class Session;
class StatusLine;

// Compacts the open journal file and, when it is damaged, offers to save what can be read.
class CompactCommand final
{
public:
    CompactCommand(Session& session, Prompt& prompt, StatusLine& status, FileCommands& files,
                   LongWork& work, const Archive& archive);

    // False when it failed or was cancelled; its message has been shown, the file is as before
    // and open again. Requires an open file.
    bool run();

private:
    bool compact(const QString& path);
    bool repair(const QString& path, const QString& reason);
    std::optional<jet::CompactReport> repaired(const QString& path, const QString& target);

    Session& m_session;
    Prompt& m_prompt;
    StatusLine& m_status;
    FileCommands& m_files;
    LongWork& m_work;
    const Archive& m_archive;
};

} // namespace shell
