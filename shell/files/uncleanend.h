#pragma once

#include <QString>

namespace jet {
class Database;
}

namespace shell {

// What the deep check of a file says after a run that did not end normally.
struct CheckVerdict
{
    bool sound = true; // nothing harmful was found
    QString text;      // for the user
};

// Reads the whole file: about a second for a large one.
CheckVerdict verifyAfterUncleanEnd(jet::Database& database);

} // namespace shell
