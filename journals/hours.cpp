#include "journals/hours.h"

#include "journals/counted.h"

using namespace Qt::StringLiterals;

namespace journals {

QString hoursText(int hours)
{
    return counted(hours, u"час"_s, u"часа"_s, u"часов"_s);
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
