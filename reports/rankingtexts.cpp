#include "reports/rankingtexts.h"

using namespace Qt::StringLiterals;

namespace reports {

bool isRate(std::size_t item)
{
    return item == RankingItem::HighShare || item == RankingItem::Quality
           || item == RankingItem::PassRate || item == RankingItem::Attendance
           || item == RankingItem::AttendanceForgiving;
}

QString rankingRule(std::size_t item)
{
    switch (item) {
    case RankingItem::HighShare:
        return u"Оценки 5 и 4 / все оценки × 100"_s;
    case RankingItem::GoodStudents:
        return u"Учащиеся, у которых нет ни двоек, ни троек, в том числе учащиеся без оценок"_s;
    case RankingItem::Quality:
        return u"Учащихся на 4 и 5 / всего учащихся × 100. Тройка считается так же, как двойка: "
               "учащийся с тройкой в это число не входит."_s;
    case RankingItem::PassRate:
        return u"(Всего учащихся - не успевающих) / всего учащихся × 100. Тройка считается так "
               "же, как двойка: учащийся с тройкой считается не успевающим."_s;
    case RankingItem::Failing:
        return u"Учащиеся, у которых есть двойка или тройка"_s;
    case RankingItem::Hours:
        return u"Занятия всей группы и первой подгруппы × часов в занятии"_s;
    case RankingItem::PersonHours:
        return u"Выдано учебных часов × всего учащихся"_s;
    case RankingItem::Attendance:
        return u"(Человеко-часы - все пропуски) / человеко-часы × 100"_s;
    case RankingItem::AttendanceForgiving:
        return u"(Человеко-часы - пропуски без уважительных причин) / человеко-часы × 100"_s;
    case RankingItem::HighPlace:
    case RankingItem::QualityPlace:
    case RankingItem::PassPlace:
    case RankingItem::AttendancePlace:
        return u"Место по предыдущей графе. Значения сравниваются округленными до целых, равные "
               "делят место."_s;
    case RankingItem::Points:
        return u"Сумма четырех мест"_s;
    case RankingItem::OverallPlace:
        return u"Место по сумме баллов: чем баллов меньше, тем место выше"_s;
    default:
        return {};
    }
}

QStringList rankingNotes()
{
    return {u"Качественная успеваемость: "_s + rankingRule(RankingItem::Quality),
            u"Успеваемость общая: "_s + rankingRule(RankingItem::PassRate),
            u"Посещаемость: "_s + rankingRule(RankingItem::Attendance)
                + u". С учетом уваж. причин: "_s + rankingRule(RankingItem::AttendanceForgiving)
                + u'.'};
}

QString rankingPeriodText(const RankingRequest& request)
{
    const QString pattern = u"dd.MM.yyyy"_s;
    return u"с %1 по %2, %3"_s.arg(request.begin.toString(pattern), request.end.toString(pattern),
                                   request.grades == RankingGrades::Final ? u"итоговые оценки"_s
                                                                          : u"оценки за месяц"_s);
}

} // namespace reports
