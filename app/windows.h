#pragma once

#include "refbooks/forms/frmsprav.h"
#include "reports/forms/documentparts.h"

namespace journals {
struct JournalParts;
}
namespace shell {
class WindowRegistry;
class frmMain;
} // namespace shell

namespace app {

// Offers the windows of the other folders to the main window. What they work with must
// outlive the registry.
void offerWindows(shell::WindowRegistry& registry, const journals::JournalParts& parts);
// The reference books, each in a window of its own. Their commands open other windows in `main`.
void offerBooks(shell::WindowRegistry& registry, refbooks::BookListParts parts,
                shell::frmMain& main);
// The documents, all in one dialog, and the ranking, which is a window.
void offerReports(shell::WindowRegistry& registry, const reports::DocumentParts& parts,
                  shell::frmMain& main);

} // namespace app
