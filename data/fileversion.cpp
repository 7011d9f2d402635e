#include "data/fileversion.h"

#include "jet/database.h"
#include "jet/sqltext.h"

namespace data {

Version programVersion()
{
    return {PROGRAM_VERSION_MAJOR, PROGRAM_VERSION_MINOR, PROGRAM_VERSION_PATCH};
}

std::optional<Version> fileVersion(jet::Database& database)
{
    const jet::TableDef table = database.tableDef("RASP");
    auto row = database.query("SELECT RASP.* FROM RASP;");
    if (!row.next())
        return {};
    const auto number = [&](const char* field) {
        return table.field(field) ? row[field].toInteger() : std::int64_t{0};
    };
    return Version{number("appMajor"), number("appMinor"), number("appRevision")};
}

void stampFile(jet::Database& database)
{
    const Version program = programVersion();
    if (fileVersion(database) == program)
        return;
    database.execute("UPDATE RASP SET appMajor = " + jet::sql::number(program.major)
                     + ", appMinor = " + jet::sql::number(program.minor)
                     + ", appRevision = " + jet::sql::number(program.revision) + ';');
}

} // namespace data
