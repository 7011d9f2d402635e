#pragma once

#include <string>
#include <string_view>

namespace jet::sql {

// The stored default value of a column as an expression of Jet SQL: "5", "\"нет\"", "=Date()",
// "Yes". What is no expression, or a bare word, is the text itself. Requires a text that is
// not empty.
std::string defaultExpression(std::string_view stored);

} // namespace jet::sql
