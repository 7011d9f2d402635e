#pragma once

#include "journals/attendancesheet.h"

#include <QString>

namespace journals {

// "1 час", "2 часа", "5 часов".
QString hoursText(int hours);
// What a cell says when it is read out: "2 часа, неуважительный", "нет пропусков".
QString spokenAbsence(const Absence& hours, AbsenceState state);

} // namespace journals
