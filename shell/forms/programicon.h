#pragma once

#include <QIcon>

namespace shell {

// The program's own icon in the sizes that windows and task bars ask for.
QIcon programIcon();

} // namespace shell
