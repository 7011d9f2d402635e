#pragma once

#include "journals/attendancesheet.h"

namespace jet {
class Database;
}

namespace journals {

// Fills the sheet of a complete selection: its columns, students, hours and totals. Throws
// jet::Error.
AttendanceSheet readAttendanceSheet(jet::Database& database, const AttendanceSelection& selection);

} // namespace journals
