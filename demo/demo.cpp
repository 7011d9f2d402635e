#include "demo/demo.h"

#include "demo/institution.h"
#include "demo/records.h"
#include "demo/writer.h"

#include "data/journal.h"
#include "jet/database.h"

#include <QFile>
#include <QString>

namespace demo {

namespace {

constexpr int kStartYear = 2025;

Size sizeOf(Scale scale)
{
    switch (scale) {
    case Scale::Small:
        return {3, 2};
    case Scale::College:
        return {40, 2};
    case Scale::Large:
        return {120, 1};
    }
    return {3, 2};
}

} // namespace

std::optional<Scale> scaleByName(std::string_view name)
{
    if (name == "small")
        return Scale::Small;
    if (name == "college")
        return Scale::College;
    if (name == "large")
        return Scale::Large;
    return std::nullopt;
}

Summary fill(jet::Database& database, Scale scale, std::uint64_t seed)
{
    const Size size = sizeOf(scale);
    const Calendar calendar(kStartYear);
    Random random(seed);
    const Institution institution = planInstitution(size, calendar, random);
    const auto lessons = holdLessons(institution, calendar, size.hoursPerLesson);
    const auto absences = recordAbsences(institution, lessons, size.hoursPerLesson, random.next());
    const auto grades =
        recordGrades(institution, calendar, lessons, absences, size.hoursPerLesson, random.next());

    jet::Transaction transaction(database);
    Writer writer(database, institution, calendar, size, random);
    writer.writeBooks();
    writer.writeLessons(lessons);
    writer.writeAbsences(lessons, absences);
    writer.writeGrades(grades);
    transaction.commit();
    return {static_cast<int>(institution.groups.size()),
            static_cast<int>(institution.students.size()), static_cast<int>(lessons.size()),
            static_cast<int>(absences.size()), static_cast<int>(grades.size())};
}

std::optional<Summary> build(const QString& path, Scale scale, std::uint64_t seed,
                             data::Messages& messages)
{
    const auto journal = data::Journal::openAndCheck(path, true, messages);
    if (!journal)
        return std::nullopt;
    try {
        return fill(journal->database(), scale, seed);
    } catch (...) {
        QFile::remove(path);
        throw;
    }
}

} // namespace demo
