#pragma once

#include "jet/storage/bytes.h"

#include <string>
#include <vector>

namespace jet::check {

// Checks that a property blob (see jet/storage/properties.h) consists to its end of blocks
// and values of known kinds. Throws Error (Damaged). Gives the columns it has properties of.
std::vector<std::string> checkPropertyBlob(ByteView blob);

} // namespace jet::check
