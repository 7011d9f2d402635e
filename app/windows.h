#pragma once

namespace shell {
class Prompt;
class Session;
class Settings;
class StatusLine;
class WindowRegistry;
} // namespace shell

namespace app {

// What the child windows work with; must outlive the registry.
struct WindowParts
{
    shell::Session& session;
    shell::Settings& settings;
    shell::Prompt& prompt;
    shell::StatusLine& status;
};

// Offers the windows of the other folders to the main window.
void offerWindows(shell::WindowRegistry& registry, const WindowParts& parts);

} // namespace app
