#pragma once

#include <QString>

namespace shell {

// Where copies of the journal and the papers made from it are kept.
struct ProgramFolders
{
    QString archive;   // "Архив"
    QString documents; // "Документы"
};

// Makes sure that both folders exist: below the program's own folder or, where that cannot
// be written (an installed program), below the user's documents folder. Each must be made for
// the user alone, since it will hold personal data. Throws std::runtime_error with a Russian
// clause when neither place can be written.
ProgramFolders makeProgramFolders(const QString& programFolder, const QString& userFolder);

} // namespace shell
