#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace cli {

// Makes help pages Russian; to be called before commands are added, which inherit it.
void speakRussian(CLI::App& program);

// One Russian line for a wrong call.
std::string usageText(const CLI::ParseError& error);

} // namespace cli
