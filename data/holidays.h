#pragma once

#include <QString>

#include <vector>

namespace jet {
class Database;
}

namespace data {

// A row of the holidays book: a day that is free in every year.
struct Holiday
{
    int day = 0;
    int month = 0;
    QString name;
};

// All of them, by date; a row may name a date that no year has. Throws jet::Error.
std::vector<Holiday> readHolidays(jet::Database& database);

} // namespace data
