#pragma once

#include <QString>

namespace shell {

// The door for choosing files: dialogs in the program, prepared answers in tests.
class FileChooser
{
public:
    virtual ~FileChooser() = default;
    // The path of an existing journal file, "" when cancelled. `folder` is where to begin.
    virtual QString openJournal(const QString& folder) = 0;
    // The path for a new journal file with its extension, "" when cancelled.
    virtual QString newJournal(const QString& folder) = 0;
    // Shows the file in the system's file manager; false when there is none.
    virtual bool reveal(const QString& path) = 0;
};

} // namespace shell
