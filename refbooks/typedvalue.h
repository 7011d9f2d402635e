#pragma once

#include "refbooks/recordfields.h"

namespace refbooks {

// What people type where a date, a time or a row of a list is asked for.

// "1.9.2026", "01/09/26", "01092026"; years of two digits lie between 1950 and 2049. An empty
// text is an invalid date; nothing when the text is no date.
std::optional<QDate> typedDate(const QString& text);
// "8:30", "8.30", "830", "8"; as above.
std::optional<QTime> typedTime(const QString& text);
// How they are shown; "" when invalid.
QString dateText(QDate date);
QString timeText(QTime time);

// The first row with that text, -1 when there is none; case and blanks around do not count.
int rowOfText(const Choices& choices, const QString& text);
// The only row that holds the text; -1 when there is none, or several.
int onlyRowWith(const Choices& choices, const QString& text);

// Why a text cannot be taken into a list, date or time field.
QString wrongText(const RecordField& field, const QString& text);

} // namespace refbooks
