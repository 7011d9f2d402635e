#include "import/lessonimport.h"

#include "data/convert.h"
#include "import/importtexts.h"
#include "import/worded.h"
#include "jet/database.h"
#include "shell/prompt.h"
#include "shell/session.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

const std::vector<std::string> kLessonFields = {"DAT", "UR",  "IDP", "IDG",  "IDGG", "IDD",
                                                "IDN", "IDR", "ZP",  "MORE", "HAND"};
constexpr std::size_t kLessonsBetweenReports = 256;
constexpr int kBooksPercent = 20; // of the work, roughly
constexpr int kLessonsPercent = 75;

// A timetable without projects has the lessons in force only, which are those of project 0.
jet::Value project(const SourceTable& lessons, std::size_t row)
{
    return lessons.has(LessonField::Project) ? lessons.value(row, LessonField::Project)
                                             : jet::Value(0);
}

std::vector<jet::Value> lessonRow(const SourceTable& lessons, std::size_t row,
                                  const BookImport& books)
{
    using F = LessonField;
    return {lessons.value(row, F::Date),
            lessons.value(row, F::Number),
            books.teachers().value(lessons.value(row, F::Teacher)),
            books.groups().value(lessons.value(row, F::Group)),
            lessons.value(row, F::Subgroup),
            books.disciplines().value(lessons.value(row, F::Discipline)),
            books.workload().value(lessons.value(row, F::Workload)),
            project(lessons, row),
            lessons.value(row, F::Substitute).toBool(),
            lessons.value(row, F::More).toBool(),
            lessons.value(row, F::Manual).toBool()};
}

// False when `progress` cancelled.
bool addLessons(const LessonChoice& choice, const BookImport& books, RowSink& sink,
                const shell::Progress& progress)
{
    const std::size_t count = choice.lessons.size();
    for (std::size_t row = 0; row < count; ++row) {
        if (choice.places[row].isComplete())
            sink.add("UROKI", kLessonFields, lessonRow(choice.lessons, row, books));
        if (progress && row % kLessonsBetweenReports == 0
            && !progress(kBooksPercent + static_cast<int>(row * kLessonsPercent / count)))
            return false;
    }
    return true;
}

ImportCounts countsOf(const BookImport& books, const LessonChoice& choice)
{
    return {books.counts(), static_cast<std::int64_t>(choice.complete), books.shortened()};
}

} // namespace

ImportCounts tryImport(const Timetable& timetable, const Period& period, const LessonChoice& choice,
                       jet::Database& journal)
{
    TrialSink sink;
    BookImport books(timetable, period, journal, sink);
    books.run();
    return countsOf(books, choice);
}

std::optional<ImportCounts> importLessons(const Timetable& timetable, const Period& period,
                                          const LessonChoice& choice, jet::Database& journal,
                                          const shell::Progress& progress)
{
    constexpr int kDone = 100;
    jet::Transaction transaction(journal);
    JournalSink sink(journal);
    BookImport books(timetable, period, journal, sink);
    books.run();
    if (!addLessons(choice, books, sink, progress))
        return std::nullopt;
    transaction.commit();
    if (progress)
        progress(kDone);
    return countsOf(books, choice);
}

bool isEmpty(const Timetable& timetable, const LessonChoice& choice)
{
    return timetable.isEmpty() && choice.complete == 0;
}

std::int64_t lessonsThere(jet::Database& journal, const Period& period, const LessonChoice& choice)
{
    QSet<QDate> days; // outside the period
    for (std::size_t row = 0; row < choice.lessons.size(); ++row)
        if (choice.places[row].isComplete())
            days.insert(data::toDate(choice.lessons.value(row, LessonField::Date)));
    auto rows = journal.query("SELECT DAT, COUNT(*) AS N FROM UROKI GROUP BY DAT;");
    std::int64_t count = 0;
    while (rows.next()) {
        const QDate day = data::toDate(rows.value(0));
        if ((day >= period.from && day <= period.to) || days.contains(day))
            count += rows.integer(1);
    }
    return count;
}

bool mayBegin(shell::Session& session, shell::Prompt& prompt, const Timetable& timetable,
              const Period& period, const LessonChoice& choice)
{
    const shell::Wording& wording = session.wording();
    if (const QString why = problem(period); !why.isEmpty()) {
        prompt.exclamation(why);
        return false;
    }
    if (isEmpty(timetable, choice)) {
        prompt.exclamation(emptyText());
        return false;
    }
    const std::int64_t there =
        choice.complete == 0 ? 0 : lessonsThere(session.database(), period, choice);
    if (there > 0
        && !prompt.question(thereText(there, wording) + u' ' + againText(wording),
                            shell::Answer::No))
        return false;
    return session.beforeMassAction(worded(wording, u"импортом занятий"_s));
}

} // namespace imports
