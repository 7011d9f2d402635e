#pragma once

#include <QString>

namespace journals {

// The number and its noun: "1 час", "2 часа", "5 часов", "11 часов", "21 час".
QString counted(int number, const QString& one, const QString& few, const QString& many);

} // namespace journals
