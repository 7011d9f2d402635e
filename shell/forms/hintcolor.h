#pragma once

class QApplication;

namespace shell {

// Gives the hints in empty lines and boxes a colour that is readable on the palette's ground, now
// and whenever the palette changes: some desktops darken the ground and leave the hints dark.
void keepHintsReadable(QApplication& program);

} // namespace shell
