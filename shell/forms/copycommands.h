#pragma once

#include "shell/files/archive.h"

#include <QObject>
#include <QString>

#include <functional>

namespace shell {

class Drives;
class FileChooser;
class FileCommands;
class LongWork;
class Prompt;
class Session;
class Settings;
class StatusLine;

struct CopyParts
{
    Session& session;
    Prompt& prompt;
    FileChooser& chooser;
    StatusLine& status;
    FileCommands& files;
    LongWork& work;
    const Drives& drives;
    const Archive& archive;
};

// The commands that make copies of the whole journal file and bring them back. Each that
// fails or is cancelled ends with its own message and gives false; the open journal then is
// open as before, with the same bytes.
class CopyCommands final : public QObject
{
    Q_OBJECT

public:
    explicit CopyCommands(const CopyParts& parts, QObject* parent = nullptr);

    // These require an open file.
    bool saveAs();
    bool copyToDrive();
    bool archive();
    // These replace the open file or, when none is open, a file that the user names.
    bool restoreFromDrive();
    bool restoreFromArchive();

private:
    // Writes the wanted file to `part`; false when cancelled.
    using Fetch =
        std::function<bool(const QString& part, const std::function<bool(int)>& progress)>;

    bool inBackground(const QString& title, const Fetch& fetch, const QString& part);
    bool restore(const QString& source, const QString& name, const Fetch& fetch);
    bool agreedToReplace(const QString& source, const QString& target, const QString& part);
    bool replace(const QString& target, const QString& part);
    void requireJournal(const QString& part) const;

    CopyParts m_parts;
};

} // namespace shell
