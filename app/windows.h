#pragma once

#include "refbooks/forms/frmsprav.h"

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

} // namespace app
