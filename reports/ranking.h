#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace jet {
class Database;
}

namespace reports {

enum class RankingGrades { Final, Monthly };
enum class RankingLevel { Specialities, Groups };

// The numbers of the indicators, as the lists and the formulas count them. Name is a text.
struct RankingItem
{
    enum Number : std::size_t {
        Name = 1,
        Size, // groups of a speciality, students of a group
        Grades,
        Fives,
        Fours,
        Threes,
        Twos,
        HighShare,
        HighPlace,
        GoodStudents,
        Quality,
        QualityPlace,
        PassRate,
        PassPlace,
        Failing,
        Hours,
        PersonHours,
        Missed,
        MissedExcused,
        MissedUnexcused,
        Attendance,
        AttendanceForgiving,
        AttendancePlace,
        Points,
        OverallPlace,
        Count, // one more than there are
    };
};

struct RankingRow
{
    std::int64_t key = 0; // of the speciality or group
    QString name;
    std::array<std::optional<double>, RankingItem::Count> values = {}; // by RankingItem

    // "" where there is no value; a decimal comma.
    QString text(std::size_t item) const;
};

struct RankingRequest
{
    QDate begin;
    QDate end; // counts for final grades only
    RankingGrades grades = RankingGrades::Final;

    friend bool operator==(const RankingRequest&, const RankingRequest&) = default;
};

// A speciality's rows are counted in so many slots; an institution with more cannot be ranked.
inline constexpr std::size_t kMostSpecialities = 50;

// The headers of the items from Name on, as written.
QStringList rankingHeads(RankingLevel level);

// The figures of a period, read once: what is shown of the groups belongs to what is shown of the
// specialities, whatever is written meanwhile.
class Ranking
{
public:
    // Reads each table once. Throws jet::Error.
    Ranking(jet::Database& database, const RankingRequest& request);
    ~Ranking();
    Ranking(const Ranking&) = delete;
    Ranking& operator=(const Ranking&) = delete;

    // One row for each speciality, in the order of the table, with places among them. Throws
    // jet::Error (Limit) beyond kMostSpecialities.
    std::vector<RankingRow> specialities() const;
    // The same for the groups of one speciality, by name.
    std::vector<RankingRow> groups(std::int64_t speciality) const;

private:
    struct Figures;
    std::unique_ptr<const Figures> m_figures;
};

// Sets the places and points of rows whose other values stand.
void setPlaces(std::vector<RankingRow>& rows);

} // namespace reports
