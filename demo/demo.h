#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

class QString;

namespace data {
class Messages;
}
namespace jet {
class Database;
}

namespace demo {

enum class Scale {
    Small,   // 3 groups
    College, // 40 groups
    Large,   // 120 groups, 3,000 students
};

// "small", "college", "large"; nothing for other words.
std::optional<Scale> scaleByName(std::string_view name);

// What was written.
struct Summary
{
    int groups = 0;
    int students = 0;
    int lessons = 0;
    int absences = 0;
    int grades = 0;
};

// Creates a journal file at `path` (which must not exist) and fills it with a believable
// institution over one study year; the same seed gives the same institution. Nothing when
// the file was refused; `messages` then said why. Throws jet::Error, leaving no file.
std::optional<Summary> build(const QString& path, Scale scale, std::uint64_t seed,
                             data::Messages& messages);

// Fills an empty journal in one transaction. Throws jet::Error.
Summary fill(jet::Database& database, Scale scale, std::uint64_t seed);

} // namespace demo
