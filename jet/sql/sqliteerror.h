#pragma once

#include <sqlite3.h>

namespace jet::sql {

// The Error for SQLite's last failure on the connection. An SQLITE_ERROR is a text that
// SQLite could not follow (Fault::Syntax).
[[noreturn]] void throwSqliteError(sqlite3* connection, int code);

inline void check(sqlite3* connection, int code)
{
    if (code != SQLITE_OK)
        throwSqliteError(connection, code);
}

} // namespace jet::sql
