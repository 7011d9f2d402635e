#pragma once

#include "journals/gradesheet.h"

#include <optional>

class QKeyEvent;

namespace journals {

// What a key means in the grid of the grades journal.
struct GradeKey
{
    enum Kind { Set, Remove, Choose, Save, Undo, Redo, Copy };
    Kind kind = Set;
    int grade = kNoGrade; // for Set
};

// Letters count by their place on the keyboard, in the Russian and the Latin layout alike.
// Nothing for any other key.
std::optional<GradeKey> gradeKey(const QKeyEvent& key);

} // namespace journals
