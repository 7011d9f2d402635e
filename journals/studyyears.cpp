#include "journals/studyyears.h"

using namespace Qt::StringLiterals;

namespace journals {

std::vector<StudyYear> studyYears(const Period& inForce)
{
    constexpr int kYears = 5;
    std::vector<StudyYear> years;
    for (int back = 0; back < kYears; ++back) {
        const Period days{inForce.from.addYears(-back), inForce.to.addYears(-back)};
        years.push_back({u"%1 - %2"_s.arg(days.from.year()).arg(days.to.year()), days});
    }
    return years;
}

} // namespace journals
