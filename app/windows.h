#pragma once

namespace journals {
struct JournalParts;
}
namespace shell {
class WindowRegistry;
}

namespace app {

// Offers the windows of the other folders to the main window. What they work with must
// outlive the registry.
void offerWindows(shell::WindowRegistry& registry, const journals::JournalParts& parts);

} // namespace app
