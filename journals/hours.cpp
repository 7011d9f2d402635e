#include "journals/hours.h"

using namespace Qt::StringLiterals;

namespace journals {

QString hoursText(int hours)
{
    const int tens = hours % 100, ones = hours % 10;
    const bool teen = tens >= 11 && tens <= 14;
    const QString word = teen || ones == 0 || ones > 4 ? u" часов"_s
                         : ones == 1                   ? u" час"_s
                                                       : u" часа"_s;
    return QString::number(hours) + word;
}

QString spokenAbsence(const Absence& hours, AbsenceState state)
{
    switch (state) {
    case AbsenceState::NotInForce:
        return u"нет занятия"_s;
    case AbsenceState::Unexcused:
        return hoursText(hours.total()) + u", неуважительный"_s;
    case AbsenceState::Excused:
        return hoursText(hours.total()) + u", уважительный"_s;
    case AbsenceState::Mixed:
        return hoursText(hours.total()) + u", из них неуважительных "_s
               + QString::number(hours.unexcused);
    case AbsenceState::None:
        break;
    }
    return u"нет пропусков"_s;
}

} // namespace journals
