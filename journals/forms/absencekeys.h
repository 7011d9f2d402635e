#pragma once

#include "journals/attendance.h"
#include "shell/forms/journalactions.h"

#include <optional>

class QKeyEvent;

namespace journals {

// What a key means in the grid of the attendance journal.
enum class AbsenceKey {
    Mark,
    MarkOrUnexcuse,
    Excuse,
    Remove,
    Enter, // the hours in their dialog
    Period,
    MarkColumn,
    MarkDay,
    Undo,
    Redo,
    Copy,
};

// Letters count by their place on the keyboard, in the Russian and the Latin layout alike.
// Nothing for any other key.
std::optional<AbsenceKey> absenceKey(const QKeyEvent& key);

// What a command of the menu does to the chosen cells; nothing for the others.
std::optional<AbsenceAction> absenceAction(shell::JournalAction action);

} // namespace journals
