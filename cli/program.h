#pragma once

#include "cli/command.h"

namespace cli {

// The exit status that scripts may rely on.
enum class Status { Done = 0, Refused = 1, Usage = 2 };

// Runs one command line (without the program's name) and gives the exit status.
Status run(std::vector<std::string> arguments, Streams streams);

} // namespace cli
