#pragma once

#include <QString>
#include <QStringList>

namespace shell {

// "Январь" for 1 to "Декабрь" for 12. Requires 1 <= month <= 12.
QString monthName(int month);
// All twelve, in order.
const QStringList& monthNames();

// "5 (отлично)" down to "2 (неудовлетворительно)", then "Зачет".
const QStringList& gradeNames();
// The name of a stored grade (2 to 5, or 1 for the pass mark); "" for any other number.
QString gradeName(int grade);

} // namespace shell
