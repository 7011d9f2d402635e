#pragma once

#include "jet/value.h"

#include <cstdint>
#include <string>
#include <string_view>

// The one place where values are placed into Jet SQL text.
namespace jet::sql {

// `"text"` with quotes doubled; any UTF-8 text is allowed.
std::string text(std::string_view value);
// `#MM/dd/yyyy#`, with ` HH:mm:ss` when there is a time of day.
std::string date(DateTime value);
// Digits with a decimal point. Requires a finite value.
std::string number(double value);
std::string number(std::int64_t value);
inline std::string number(int value)
{
    return number(std::int64_t{value});
}
// A table, column or index name in brackets. Throws Error (UnknownName) for a name that Jet
// does not allow: empty, over 64 characters, or with . ! ` [ ] or control characters in it.
std::string name(std::string_view value);

} // namespace jet::sql
