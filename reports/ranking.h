#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace jet {
class Database;
}

namespace reports {

enum class RankingGrades { Final, Monthly };
enum class RankingLevel { Specialities, Groups };

// The numbers of the indicators, as the lists and the formulas count them. kName is a text.
enum RankingItem : std::size_t {
    kName = 1,
    kSize, // groups of a speciality, students of a group
    kGrades,
    kFives,
    kFours,
    kThrees,
    kTwos,
    kHighShare,
    kHighPlace,
    kGoodStudents,
    kQuality,
    kQualityPlace,
    kPassRate,
    kPassPlace,
    kFailing,
    kHours,
    kPersonHours,
    kMissed,
    kMissedExcused,
    kMissedUnexcused,
    kAttendance,
    kAttendanceForgiving,
    kAttendancePlace,
    kPoints,
    kOverallPlace,
    kRankingItems, // one more than there are
};

struct RankingRow
{
    std::int64_t key = 0; // of the speciality or group
    QString name;
    std::array<std::optional<double>, kRankingItems> values = {}; // by RankingItem

    // "" where there is no value; a decimal comma.
    QString text(std::size_t item) const;
};

struct RankingRequest
{
    QDate begin;
    QDate end; // counts for final grades only
    RankingGrades grades = RankingGrades::Final;
};

// A speciality's rows are counted in so many slots; an institution with more cannot be ranked.
inline constexpr std::size_t kMostSpecialities = 50;

// The headers of the items from kName on, as written.
QStringList rankingHeads(RankingLevel level);

// One row for each speciality, in the order of the table, with places among them. Throws
// jet::Error, with Fault::Limit beyond kMostSpecialities.
std::vector<RankingRow> rankSpecialities(jet::Database& database, const RankingRequest& request);
// The same for the groups of one speciality.
std::vector<RankingRow> rankGroups(jet::Database& database, const RankingRequest& request,
                                   std::int64_t speciality);

// Sets the places and points of rows whose other values stand.
void setPlaces(std::vector<RankingRow>& rows);

} // namespace reports
