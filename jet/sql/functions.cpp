#include "jet/sql/functions.h"

namespace jet::sql {

void registerAllFunctions(sqlite3* connection, ErrorSlot& errors)
{
    registerFunctions(connection, errors, textFunctions());
    registerFunctions(connection, errors, numberFunctions());
    registerFunctions(connection, errors, dateFunctions());
    registerFunctions(connection, errors, conversionFunctions());
    registerAggregates(connection, errors);
}

} // namespace jet::sql
