#include "jet/sql/collation.h"

#include "jet/sql/sqliteerror.h"
#include "jet/storage/sortkey.h"

#include <string_view>

namespace jet::sql {

namespace {

// An exception here could only be a lack of memory, which SQLite offers no way to report:
// noexcept ends the program rather than sort wrongly.
int compare(void*, int lengthA, const void* a, int lengthB, const void* b) noexcept
{
    return compareGeneral({static_cast<const char*>(a), static_cast<std::size_t>(lengthA)},
                          {static_cast<const char*>(b), static_cast<std::size_t>(lengthB)});
}

} // namespace

void registerCollation(sqlite3* connection)
{
    check(connection, sqlite3_create_collation_v2(connection, kCollation, SQLITE_UTF8, nullptr,
                                                  compare, nullptr));
}

} // namespace jet::sql
