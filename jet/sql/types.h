#pragma once

#include "jet/tabledef.h"

#include <optional>

namespace jet::sql {

// The type of an expression as far as it is known before it runs.
using Type = std::optional<FieldType>;

bool isText(Type type);
// Boolean included: it is -1 or 0.
bool isNumber(Type type);
bool isDate(Type type);

// Of a value that is one or the other (IIf, UNION ...): nothing for text mixed with numbers.
Type unified(Type a, Type b);
// Of `+`, `-` and `*` on values that are no text.
Type additionType(Type a, Type b);
Type subtractionType(Type a, Type b);
Type productType(Type a, Type b);
Type negatedType(Type type);
// Of Sum, Abs and Round.
Type sumType(Type type);
Type numericType(Type type);

} // namespace jet::sql
