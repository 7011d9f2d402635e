#pragma once

#include "jet/database.h"
#include "jet/storage/pager.h"
#include "jet/value.h"

namespace jet {

// The pages of a new database that holds nothing but its catalogue: 16 pages, page 0 as it
// stands in the file, the others plain.
Bytes newDatabaseImage(const DatabaseHeader& header);

// The header of a file made now with these options.
DatabaseHeader newHeader(const CreateOptions& options);

} // namespace jet
