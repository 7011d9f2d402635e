#pragma once

#include <QIcon>
#include <QString>

namespace shell {

// A line icon of the program by its name in icons.qrc, such as "Open". It is drawn from
// its SVG at the size asked for, in the text colour of the palette in force when painted, so
// that it is sharp at every scale and readable in light and dark alike.
QIcon paletteIcon(const QString& name);

} // namespace shell
