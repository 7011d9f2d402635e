#pragma once

#include <QString>

namespace shell {

class ProgramStarter;
class Prompt;

enum class RemoteHelp { AnyDesk, AmmyyAdmin };

// Start a program that is no part of this one, or tell that it is not there.
void startCalculator(ProgramStarter& starter, Prompt& prompt);
void startRemoteHelp(ProgramStarter& starter, Prompt& prompt, RemoteHelp kind);

} // namespace shell
