#pragma once

class QWidget;

namespace shell {

class Wording;

// Gives every menu command below `window` the line that the status bar shows while the command
// is pointed at.
void addStatusTips(const QWidget& window, const Wording& wording);

} // namespace shell
