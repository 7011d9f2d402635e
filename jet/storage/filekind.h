#pragma once

#include "jet/storage/bytes.h"

#include <string>

namespace jet {

// What a file is, by its first bytes.
enum class FileKind {
    Jet4,    // Access 2000 to 2003
    Jet3,    // Access 95 and 97
    Ace,     // Access 2007 and later
    Foreign, // not of Access
};

// Takes what there is of the file's first page.
FileKind kindOf(ByteView start);

// "Access 2010" for a file of kind Ace.
std::string aceProgram(ByteView start);

// What a file of kind Foreign seems to be, in the nominative: "книга Excel".
std::string foreignName(ByteView start);

} // namespace jet
