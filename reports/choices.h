#pragma once

#include "journals/lists.h"

#include <optional>
#include <vector>

namespace reports {

// What the inputs of a document offer; all throw jet::Error.
// The disciplines of the group, or all of the institution, by name.
std::vector<journals::ListEntry<journals::DisciplineId>>
disciplineChoices(jet::Database& database, std::optional<journals::GroupId> group);
// The enrolled students of the group by name, none without a group.
std::vector<journals::ListEntry<journals::StudentId>>
studentChoices(jet::Database& database, std::optional<journals::GroupId> group);

} // namespace reports
