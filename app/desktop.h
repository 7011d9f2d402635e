#pragma once

#include "app/options.h"

namespace shell {
class Session;
class frmMain;
} // namespace shell

namespace app {

// Carries out what a start of the program was asked for beyond opening a file at once.
void carryOut(shell::frmMain& window, const Options& options, const QString& file);
// What a later start handed over: the window comes to the front and opens the file, unless a
// dialog waits for an answer first.
void takeOver(shell::frmMain& window, shell::Session& session, const Options& options);
// Ends the program as the user would, closing dialogs first; nobody is there to answer them.
void leave(shell::frmMain& window);

} // namespace app
