#include "jet/sql/sqliteerror.h"

#include "jet/error.h"

#include <new>
#include <string>
#include <string_view>

namespace jet::sql {

namespace {

Fault faultOf(int code, std::string_view message)
{
    switch (code & 0xff) {
    case SQLITE_TOOBIG:
        return Fault::Limit;
    case SQLITE_MISMATCH:
        return Fault::Type;
    case SQLITE_READONLY:
        return Fault::ReadOnly;
    case SQLITE_CONSTRAINT:
        return Fault::NullValue;
    default:
        return message.find("overflow") != std::string_view::npos ? Fault::Overflow : Fault::Syntax;
    }
}

} // namespace

void throwSqliteError(sqlite3* connection, int code)
{
    if (code == SQLITE_NOMEM)
        throw std::bad_alloc();
    const std::string message = sqlite3_errmsg(connection);
    const Fault fault = faultOf(code, message);
    if (fault == Fault::Overflow)
        throw Error(fault, "переполнение при вычислении запроса");
    throw Error(fault, "запрос не может быть выполнен: " + message);
}

} // namespace jet::sql
