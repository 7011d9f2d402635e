#pragma once

#include "jet/storage/definition.h"
#include "jet/storage/jet3/pages.h"

namespace jet::jet3 {

// A table definition of an Access 95/97 file in the terms of the present format. Lengths
// stay those of the file: one byte a character. Throws Error (Damaged), also on a page cycle.
Definition readDefinition(const Pages& pages, PageNumber page);

} // namespace jet::jet3
