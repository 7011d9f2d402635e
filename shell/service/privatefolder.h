#pragma once

#include <QString>

namespace shell {

// Makes the folder, with those above it, for the user alone. A folder that is there stays as
// it is. False when it is neither there nor can be made.
bool makePrivateFolder(const QString& path);

// Where the program keeps what it knows of its own runs, such as the log:
// $XDG_STATE_HOME/jurnal or what stands for it. Not made yet.
QString stateFolder();

} // namespace shell
