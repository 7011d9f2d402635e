#pragma once

#include <QList>
#include <QRect>

class QMainWindow;

namespace shell {

class Settings;

// The saved rectangle, moved and shrunk as far as needed to be reached on one of the
// screens; a window left on a monitor that is gone comes back. `screens` holds the usable
// area of each, the primary one first, and must not be empty.
QRect placeOnScreens(const QRect& saved, const QList<QRect>& screens);

// Restores position, size and state; a first start is centred on the primary screen.
void restorePlace(QMainWindow& window, const Settings& settings);
// Keeps them; of a maximised or minimised window the place it would return to.
void savePlace(const QMainWindow& window, Settings& settings);

} // namespace shell
