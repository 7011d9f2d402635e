#pragma once

#include "jet/storage/check/rows.h"
#include "jet/storage/check/space.h"
#include "jet/storage/definition.h"

#include <optional>
#include <string>

namespace jet::check {

// Checks one table whole: definition, maps, rows, long values, indexes, counters. `visit`
// sees every readable row and may be empty. Gives the definition, nothing when it cannot be
// read.
std::optional<Definition> checkTable(Space& space, Findings& findings, const std::string& table,
                                     PageNumber definitionPage, const Rows::Visitor& visit);

} // namespace jet::check
