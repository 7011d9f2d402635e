#pragma once

#include <QDate>
#include <QString>

namespace imports {

// The days whose lessons are imported, both ends included.
struct Period
{
    QDate from;
    QDate to;

    friend bool operator==(const Period&, const Period&) = default;
};

// The month around a day.
Period monthOf(QDate day);

// Why lessons of this period are not imported, "" when they can be.
QString problem(const Period& period);
// The one problem that is told at once.
bool tooLong(const Period& period);

} // namespace imports
