#pragma once

#include <QString>

namespace shell {

// USERS.ROLE; any other stored number counts as User.
enum class Role { Administrator = 0, Operator = 1, User = 2 };

Role roleOf(int stored);
QString roleName(Role role); // as the users book shows it

// The one place that says what a role may do. `command` is the control name of a menu command.
//   Administrator  everything
//   Operator       everything but the users book
//   User           keeps the journals, reads and prints all; changes no book, no option, imports
//                  nothing and makes no copy of the file
bool mayRun(Role role, const QString& command);

// Changes in the reference books; the users book besides asks for an administrator.
bool mayEditBooks(Role role);
bool mayEditUsers(Role role);

} // namespace shell
