#include "reports/rankingtexts.h"

using namespace Qt::StringLiterals;

namespace reports {

QString rankingRule(std::size_t item)
{
    switch (item) {
    case kHighShare:
        return u"Оценки 5 и 4 / все оценки × 100"_s;
    case kGoodStudents:
        return u"Учащиеся, у которых нет ни двоек, ни троек, в том числе учащиеся без оценок"_s;
    case kQuality:
        return u"Учащихся на 4 и 5 / всего учащихся × 100. Тройка считается так же, как двойка: "
               "учащийся с тройкой в это число не входит."_s;
    case kPassRate:
        return u"(Всего учащихся - не успевающих) / всего учащихся × 100. Тройка считается так "
               "же, как двойка: учащийся с тройкой считается не успевающим."_s;
    case kFailing:
        return u"Учащиеся, у которых есть двойка или тройка"_s;
    case kHours:
        return u"Занятия всей группы и первой подгруппы × часов в занятии"_s;
    case kPersonHours:
        return u"Выдано учебных часов × всего учащихся"_s;
    case kAttendance:
        return u"(Человеко-часы - все пропуски) / человеко-часы × 100"_s;
    case kAttendanceForgiving:
        return u"(Человеко-часы - пропуски без уважительных причин) / человеко-часы × 100"_s;
    case kHighPlace:
    case kQualityPlace:
    case kPassPlace:
    case kAttendancePlace:
        return u"Место по предыдущей графе. Значения сравниваются округленными до целых, равные "
               "делят место."_s;
    case kPoints:
        return u"Сумма четырех мест"_s;
    case kOverallPlace:
        return u"Место по сумме баллов: чем баллов меньше, тем место выше"_s;
    default:
        return {};
    }
}

QStringList rankingNotes()
{
    return {u"Качественная успеваемость: "_s + rankingRule(kQuality),
            u"Успеваемость общая: "_s + rankingRule(kPassRate),
            u"Посещаемость: "_s + rankingRule(kAttendance) + u". С учетом уваж. причин: "_s
                + rankingRule(kAttendanceForgiving) + u'.'};
}

QString rankingPeriodText(const RankingRequest& request)
{
    const QString pattern = u"dd.MM.yyyy"_s;
    return u"с %1 по %2, %3"_s.arg(request.begin.toString(pattern), request.end.toString(pattern),
                                   request.grades == RankingGrades::Final ? u"итоговые оценки"_s
                                                                          : u"оценки за месяц"_s);
}

} // namespace reports
