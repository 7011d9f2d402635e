#include "data/convert.h"

#include "jet/sqltext.h"

#include <QByteArray>

#include <cmath>

namespace data {

std::string toUtf8(const QString& text)
{
    return text.toStdString();
}

QString fromUtf8(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

jet::DateTime toJet(QDate date)
{
    if (!date.isValid())
        return {};
    return jet::DateTime::of(date.year(), date.month(), date.day());
}

std::string toSql(QDate date)
{
    return jet::sql::date(toJet(date));
}

QDate toDate(jet::DateTime date)
{
    if (std::trunc(date.days) == 0)
        return {};
    const auto parts = date.parts();
    return {parts.year, parts.month, parts.day};
}

QDate toDate(const jet::Value& value)
{
    return value.isNull() ? QDate() : toDate(value.toDate());
}

jet::DateTime toJet(QTime time)
{
    if (!time.isValid())
        return {};
    return {time.msecsSinceStartOfDay() / 86'400'000.0};
}

QTime toTime(jet::DateTime date)
{
    const auto parts = date.parts();
    return {parts.hour, parts.minute, parts.second};
}

QString toText(const jet::Value& value)
{
    return fromUtf8(value.toText());
}

std::filesystem::path toPath(const QString& path)
{
    return std::filesystem::path(path.toStdU16String());
}

QString fromPath(const std::filesystem::path& path)
{
    return QString::fromStdU16String(path.u16string());
}

} // namespace data
