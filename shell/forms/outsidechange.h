#pragma once

#include "shell/files/filestamp.h"

#include <QObject>

#include <optional>

namespace shell {

class FileCommands;
class FileWatch;
class Prompt;
class Session;

// Tells the user that another program has changed the open file, or that it has vanished, and
// offers to open it anew. Each state is told once, and again for every change refused.
class OutsideChange final : public QObject
{
    Q_OBJECT

public:
    OutsideChange(Session& session, Prompt& prompt, FileCommands& files, FileWatch& watch,
                  QObject* parent = nullptr);

    // To be called when the user comes back to the window.
    void look();

private:
    void tell();

    Session& m_session;
    Prompt& m_prompt;
    FileCommands& m_files;
    FileWatch& m_watch;
    bool m_telling = false;
    bool m_told = false;
    std::optional<FileStamp> m_toldOf;
};

} // namespace shell
