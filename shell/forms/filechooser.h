#pragma once

#include "shell/files/archive.h"
#include "shell/files/drives.h"

#include <QString>

#include <optional>

namespace shell {

class Prompt;

enum class DriveAim { CopyTo, RestoreFrom };

// What a removable drive is wanted for.
struct DriveRequest
{
    DriveAim aim;
    const Drives& drives;
    QString fileName; // of the journal, "" when none is open
    qint64 bytes = 0; // that have to find room
};

// The door for choosing files: dialogs in the program, prepared answers in tests.
class FileChooser
{
public:
    virtual ~FileChooser() = default;
    // The path of an existing journal file, "" when cancelled. `folder` is where to begin.
    virtual QString openJournal(const QString& folder) = 0;
    // The path of an existing file to import from, "" when cancelled. `filter` as Qt's file
    // dialogs take it; `last` is the file chosen last time, or the folder to begin in.
    virtual QString openSource(const QString& title, const QString& filter,
                               const QString& last) = 0;
    // The path for a new journal file with its extension, "" when cancelled.
    virtual QString newJournal(const QString& folder) = 0;
    // The path to save a journal under, "" when cancelled. The user has agreed that a file of
    // that name is replaced.
    virtual QString saveJournal(const QString& folder, const QString& name) = 0;
    // The path to write a table under, ending in ".xlsx" or ".csv", "" when cancelled. The user
    // has agreed that a file of that name is replaced.
    virtual QString saveTable(const QString& folder, const QString& name) = 0;
    // The path to write a document under, ending as `name` does, "" when cancelled. The user has
    // agreed that a file of that name is replaced.
    virtual QString saveDocument(const QString& folder, const QString& name) = 0;
    // The path on a removable drive to copy to or from, "" when cancelled.
    virtual QString fileOnDrive(const DriveRequest& request) = 0;
    // The copy to restore. `journal` is the file whose copies are listed, "" for all.
    virtual std::optional<ArchivedCopy> archivedCopy(const Archive& archive, const QString& journal,
                                                     Prompt& prompt) = 0;
    // Shows the file in the system's file manager; false when there is none.
    virtual bool reveal(const QString& path) = 0;
};

} // namespace shell
