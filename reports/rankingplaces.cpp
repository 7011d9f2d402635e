// Places and points of the ranking, its headers and the texts of its values.
#include "reports/ranking.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

// Values are compared as whole numbers, halves to the even one; no value counts as 0.
double whole(const RankingRow& row, std::size_t item)
{
    return std::nearbyint(row.values[item].value_or(0));
}

// The first place goes to the highest value, or to the lowest; equal values share a place and
// the next ones are skipped.
void setPlace(std::vector<RankingRow>& rows, std::size_t item, std::size_t place, bool highFirst)
{
    for (RankingRow& row : rows) {
        const double own = whole(row, item);
        const auto better = std::ranges::count_if(rows, [&](const RankingRow& other) {
            return highFirst ? whole(other, item) > own : whole(other, item) < own;
        });
        row.values[place] = static_cast<double>(better + 1);
    }
}

} // namespace

void setPlaces(std::vector<RankingRow>& rows)
{
    constexpr std::pair<std::size_t, std::size_t> kPlaces[] = {
        {RankingItem::HighShare, RankingItem::HighPlace},
        {RankingItem::Quality, RankingItem::QualityPlace},
        {RankingItem::PassRate, RankingItem::PassPlace},
        {RankingItem::AttendanceForgiving, RankingItem::AttendancePlace},
    };
    for (const auto& [item, place] : kPlaces)
        setPlace(rows, item, place, true);
    for (RankingRow& row : rows) {
        double points = 0;
        for (const auto& place : kPlaces)
            points += row.values[place.second].value_or(0);
        row.values[RankingItem::Points] = points;
    }
    setPlace(rows, RankingItem::Points, RankingItem::OverallPlace, false);
}

QString RankingRow::text(std::size_t item) const
{
    if (item == RankingItem::Name)
        return name;
    if (!values[item])
        return {};
    QLocale russian(QLocale::Russian);
    russian.setNumberOptions(QLocale::OmitGroupSeparator);
    return russian.toString(*values[item], 'g', QLocale::FloatingPointShortest);
}

QStringList rankingHeads(RankingLevel level)
{
    const bool groups = level == RankingLevel::Groups;
    return {groups ? u"Группа"_s : u"Специальность"_s,
            groups ? u"Человек в группе"_s : u"Количество групп"_s,
            u"Количество оценок"_s,
            u"5"_s,
            u"4"_s,
            u"3"_s,
            u"2"_s,
            u"% повышенных оценок"_s,
            u"Место"_s,
            u"Учащихся на 4 и 5"_s,
            u"Качественная успеваемость"_s,
            u"Место"_s,
            groups ? u"Успеваемост общая"_s : u"Успеваемость общая"_s, // so they are written
            u"Место"_s,
            u"Количество не успевающих"_s,
            u"Выдано учебных часов"_s,
            u"Человеко/часов"_s,
            u"Пропуски учебных часов"_s,
            u"По уваж. причинам"_s,
            u"По не уваж. причинам"_s,
            groups ? u"Посещаемоть"_s : u"Посещаемость"_s,
            u"С учетом уваж. причин"_s,
            u"Место"_s,
            u"Баллов по местам"_s,
            u"Место по уч. заведению"_s};
}

} // namespace reports
