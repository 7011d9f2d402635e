#include "refbooks/lookups.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "refbooks/worded.h"
#include "shell/access/rights.h"

#include <algorithm>
#include <cassert>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace refbooks {
namespace {

// A list that a query fills.
struct Source
{
    Lookup lookup;
    const char* fill;
    const char* key;
    const char* text;
    const char* one; // a row by its key: the query up to the key
};

constexpr Source kSources[] = {
    {Lookup::Teachers, "SELECT SPPREP.* From SPPREP ORDER BY SPPREP.FAMIO;", "IDP", "FAMIO",
     "SELECT SPPREP.* From SPPREP WHERE ((SPPREP.IDP)="},
    {Lookup::Groups, "SELECT SPGRUP.IDG, SPGRUP.NAIM AS GRP FROM SPGRUP ORDER BY SPGRUP.NAIM;",
     "IDG", "GRP", "SELECT SPGRUP.*, SPGRUP.NAIM AS GRP FROM SPGRUP WHERE ((SPGRUP.IDG)="},
    {Lookup::Rooms,
     R"(SELECT SPKAUD.*, SPKAUD.KAUDI & "  " & SPKAUD.Memo AS AUD From SPKAUD
        ORDER BY SPKAUD.KAUDI;)",
     "IDA", "AUD",
     R"(SELECT SPKAUD.*, SPKAUD.KAUDI & "  " & SPKAUD.Memo AS AUD From SPKAUD
        WHERE ((SPKAUD.IDA)=)"},
    {Lookup::RoomTypes, "SELECT SPAUD.* From SPAUD ORDER BY SPAUD.NAIM;", "IDT", "NAIM",
     "SELECT SPAUD.* From SPAUD WHERE ((SPAUD.IDT)="},
    {Lookup::Specialities, "SELECT SPOTD.* From SPOTD ORDER BY SPOTD.Sokr;", "IDO", "Sokr",
     "SELECT SPOTD.* From SPOTD WHERE ((SPOTD.IDO)="},
    {Lookup::Departments, "SELECT SPKAF.* From SPKAF ORDER BY SPKAF.NAIM;", "IDK", "NAIM",
     "SELECT SPKAF.* From SPKAF WHERE ((SPKAF.IDK)="},
    {Lookup::Months, "SELECT MONTH.* From MONTH ORDER BY MONTH.MN;", "MN", "NAIM",
     "SELECT MONTH.* From MONTH WHERE ((MONTH.MN)="},
    {Lookup::Disciplines, "SELECT SPPRED.* From SPPRED ORDER BY SPPRED.NAIM;", "IDD", "NAIM",
     "SELECT SPPRED.* From SPPRED WHERE ((SPPRED.IDD)="},
    {Lookup::LessonTypes, "SELECT SPTIPZ.* From SPTIPZ ORDER BY SPTIPZ.NAIM;", "IDZ", "NAIM",
     "SELECT SPTIPZ.* From SPTIPZ WHERE ((SPTIPZ.IDZ)="},
    {Lookup::GroupTypes, "SELECT SPTIPG.* From SPTIPG ORDER BY SPTIPG.NAIM;", "IDF", "NAIM",
     "SELECT SPTIPG.* From SPTIPG WHERE ((SPTIPG.IDF)="},
    {Lookup::StudyForms, "SELECT SPVID.* From SPVID ORDER BY SPVID.NAIM;", "IDV", "NAIM",
     "SELECT SPVID.* From SPVID WHERE ((SPVID.IDV)="},
    {Lookup::Grades, "SELECT SPBALL.* From SPBALL ORDER BY SPBALL.OCEN;", "OCEN", "NAIMOC",
     "SELECT SPBALL.* From SPBALL WHERE ((SPBALL.OCEN)="},
};

const Source* sourceOf(Lookup lookup)
{
    const auto* found = std::ranges::find(kSources, lookup, &Source::lookup);
    return found == std::end(kSources) ? nullptr : found;
}

Choices filled(const Source& source, const std::string& query, jet::Database& database)
{
    Choices choices;
    auto rows = database.query(query);
    const int key = rows.column(source.key);
    const int text = rows.column(source.text);
    while (rows.next())
        choices.push_back({static_cast<int>(rows.integer(key)), data::fromUtf8(rows.text(text))});
    return choices;
}

// The whole group, then the subgroups that students have.
Choices subgroups(jet::Database& database, const shell::Wording& wording)
{
    auto rows = database.query("SELECT max(IDGG) FROM SPSTUD;");
    Choices choices = numberedSubgroups(rows.next() ? rows.integer(0) : 0);
    choices.insert(choices.begin(), {0, worded(wording, u"(группа полностью)"_s)});
    return choices;
}

Choices roles()
{
    Choices choices;
    for (const auto role : {shell::Role::Administrator, shell::Role::Operator, shell::Role::User})
        choices.push_back({static_cast<int>(role), shell::roleName(role)});
    return choices;
}

} // namespace

Choices choices(Lookup lookup, jet::Database& database, const shell::Wording& wording)
{
    switch (lookup) {
    case Lookup::Subgroups:
        return subgroups(database, wording);
    case Lookup::Sexes:
        return {{0, u"Ж"_s}, {-1, u"М"_s}};
    case Lookup::Roles:
        return roles();
    default: {
        const Source* source = sourceOf(lookup);
        assert(source);
        return filled(*source, source->fill, database);
    }
    }
}

Choices numberedSubgroups(std::int64_t highest)
{
    constexpr std::int64_t kUsual = 2, kMost = 9;
    Choices choices;
    for (int number = 1; number <= std::clamp(highest, kUsual, kMost); ++number)
        choices.push_back({number, QString::number(number) + u" п/г"_s});
    return choices;
}

QString textOfKey(Lookup lookup, int key, jet::Database& database, const shell::Wording& wording)
{
    const Source* source = sourceOf(lookup);
    const Choices rows = source ? filled(*source, source->one + sql::number(key) + ");", database)
                                : choices(lookup, database, wording);
    const int position = positionOf(rows, key);
    return position < 0 ? QString() : rows[static_cast<std::size_t>(position)].text;
}

int positionOf(const Choices& choices, std::optional<int> key)
{
    const auto found = std::ranges::find(choices, key, &Choice::key);
    return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

} // namespace refbooks
