#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace jet {
class Database;
}
namespace shell {
class Wording;
}

namespace refbooks {

// The drop-down lists of the dialogs and filters.
enum class Lookup {
    Teachers,
    Groups,
    Rooms,
    RoomTypes,
    Specialities, // by abbreviation, which is shown
    Departments,
    Months,
    Disciplines,
    LessonTypes,
    GroupTypes,
    StudyForms,
    Grades,
    Subgroups,
    Sexes,
    Roles,
};

struct Choice
{
    std::optional<int> key; // nothing: the list's way to choose nothing
    QString text;

    friend bool operator==(const Choice&, const Choice&) = default;
};
using Choices = std::vector<Choice>;

// The list's rows in its order. Throws jet::Error.
Choices choices(Lookup lookup, jet::Database& database, const shell::Wording& wording);

// "1 п/г", "2 п/г" and what further ones there are up to the highest in use.
Choices numberedSubgroups(std::int64_t highest);

// The text of the row with that key, "" when there is none. Throws jet::Error.
QString textOfKey(Lookup lookup, int key, jet::Database& database, const shell::Wording& wording);

// The row with that key in a filled list, -1 when there is none.
int positionOf(const Choices& choices, std::optional<int> key);

} // namespace refbooks
