#pragma once

#include <Qt>

namespace journals {

// What the models of the journal grids tell beside Qt's roles; looks are up to the forms.
enum GridRole {
    StateRole = Qt::UserRole, // int of AbsenceState
    DayOffRole,               // bool: Sunday or holiday
    TotalRole,                // bool: a balance, sum or average, not a cell that is entered
    UnsavedRole,              // bool: changed and not yet written
};

} // namespace journals
