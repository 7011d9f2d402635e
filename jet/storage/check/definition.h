#pragma once

#include "jet/storage/check/findings.h"
#include "jet/storage/check/space.h"
#include "jet/storage/definition.h"

#include <string>

namespace jet::check {

// Claims the pages of a definition and checks their headers.
void checkDefinitionPages(Space& space, Findings& findings, const std::string& table,
                          PageNumber first);

// Checks of a definition what decoding it does not.
void checkDefinition(Space& space, Findings& findings, const std::string& table,
                     const Definition& definition);

} // namespace jet::check
