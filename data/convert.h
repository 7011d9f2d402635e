#pragma once

#include "jet/value.h"

#include <QDate>
#include <QString>
#include <QTime>

#include <filesystem>
#include <string>
#include <string_view>

// The one place where Qt's types meet the engine's: text as UTF-8, dates as plain values.
namespace data {

std::string toUtf8(const QString& text);
QString fromUtf8(std::string_view text);

// An invalid date becomes day 0 (30 Dec 1899), Jet's empty date.
jet::DateTime toJet(QDate date);
// The date as a literal of Jet SQL: "#11/30/2024#".
std::string toSql(QDate date);
// The day of a Jet date; day 0 gives an invalid QDate.
QDate toDate(jet::DateTime date);
// NULL gives an invalid QDate.
QDate toDate(const jet::Value& value);
// A time of day as Jet keeps it, a fraction of day 0.
jet::DateTime toJet(QTime time);
QTime toTime(jet::DateTime date);

// NULL gives an empty text; dates and numbers as jet::Value::toText() writes them.
QString toText(const jet::Value& value);

std::filesystem::path toPath(const QString& path);
QString fromPath(const std::filesystem::path& path);

} // namespace data
