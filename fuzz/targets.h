#pragma once

#include "jet/storage/bytes.h"

namespace jet::fuzz {

// Each takes one input of a fuzzer. jet::Error is what damaged files and wrong statements
// may end with, and is caught; anything else thrown is a finding.

// Opens a damaged file, reads all that is in it, queries and checks it.
void readDamagedFile(ByteView input);
// Opens a damaged file, changes rows and definitions, reopens it and reads it. Where nothing
// was damaged, the deep check must find nothing harmful in the result.
void changeDamagedFile(ByteView input);
// Saves what there is in a damaged file into a new one, which must be sound.
void compactDamagedFile(ByteView input);
// Runs lines of Jet SQL on a sound file, and checks it the same way.
void runStatements(ByteView input);

} // namespace jet::fuzz
