#pragma once

#include "jet/sql/errorslot.h"
#include "jet/value.h"

#include <cstdint>
#include <span>
#include <string>

#include <sqlite3.h>

namespace jet::sql {

// The arguments of one call of a Jet function, read as Jet converts them. The conversions
// throw Error: Type when a text is not what is asked for, NullValue for NULL.
class Arguments
{
public:
    Arguments(const char* function, std::span<sqlite3_value*> values)
        : m_function(function)
        , m_values(values)
    {}

    int count() const { return static_cast<int>(m_values.size()); }
    bool isNull(int i) const { return type(i) == SQLITE_NULL; }
    bool isText(int i) const { return type(i) == SQLITE_TEXT; }
    bool isInteger(int i) const { return type(i) == SQLITE_INTEGER; }

    Value value(int i) const; // as it is
    double number(int i) const;
    std::int64_t integer(int i) const; // halves go to the even neighbour
    int smallInteger(int i) const;     // Error (Overflow) beyond 32 bits
    int smallInteger(int i, int otherwise) const
    {
        return i < count() ? smallInteger(i) : otherwise;
    }
    bool truth(int i) const { return number(i) != 0; }
    std::string text(int i) const; // numbers as CStr writes them
    DateTime date(int i) const;    // a number of days or a text that CDate reads

    // Throws Error (Type): the function was called with a value it has no result for.
    [[noreturn]] void refuse(int i) const;

private:
    int type(int i) const { return sqlite3_value_type(m_values[static_cast<std::size_t>(i)]); }

    const char* m_function;
    std::span<sqlite3_value*> m_values;
};

enum class Nulls {
    Pass, // NULL in any argument is the result, without a call
    Take, // the function looks at NULL itself
};

enum class Stability {
    Constant, // the same arguments give the same result
    Varies,   // reads the clock or a random number
};

// One function that SQLite calls as `jet_` + name.
struct Function
{
    const char* name;
    int minimum, maximum; // number of arguments; maximum -1: any number
    Value (*body)(const Arguments&);
    Nulls nulls = Nulls::Pass;
    Stability stability = Stability::Constant;
};

// Results of functions and columns, as the values of a SQLite expression.
void setResult(sqlite3_context* context, const Value& value);
Value valueOf(sqlite3_value* value);

// `functions` must outlive the connection.
void registerFunctions(sqlite3* connection, ErrorSlot& errors, std::span<const Function> functions);

} // namespace jet::sql
