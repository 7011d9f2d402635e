#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

// Runs the real program and gives what it said.
struct CommandResult
{
    int status = -1; // exit status; -1 when it crashed or did not end
    std::string out;
    std::string err;

    // The document on standard output; a discarded value when it is none.
    nlohmann::json json() const { return nlohmann::json::parse(out, nullptr, false); }
};

// With settings of its own, not the user's.
CommandResult jurnalctl(const std::vector<std::string>& arguments);
