#pragma once

#include "journals/studyperiod.h"

#include <QString>

#include <vector>

namespace journals {

struct StudyYear
{
    QString label; // "2022 - 2023"
    Period days;
};

// The study year in force, then those before it that students still here may have begun in.
std::vector<StudyYear> studyYears(const Period& inForce);

} // namespace journals
