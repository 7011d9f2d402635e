#pragma once

#include "journals/attendancesheet.h"

#include <QColor>
#include <QFont>
#include <QPalette>

namespace journals {

// How the journal grids look, in light and dark alike: colours come from the palette, and
// no colour speaks alone.

// Text for the kind of hours: unexcused red, excused blue, not in force grey.
QColor stateColor(AbsenceState state, const QPalette& palette, const QColor& background);
// Unexcused is bold, excused italic.
QFont stateFont(AbsenceState state, QFont font);
// Behind Sundays and holidays, and behind sums.
QColor dayOffShade(const QPalette& palette);
QColor totalShade(const QPalette& palette);
// Between cells; what the style draws vanishes in the dark.
QColor gridLine(const QPalette& palette);

} // namespace journals
