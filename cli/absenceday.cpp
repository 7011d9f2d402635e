#include "cli/command.h"
#include "cli/journalfile.h"
#include "cli/output.h"
#include "journals/absenceentry.h"
#include "journals/history.h"

#include <algorithm>
#include <optional>
#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

struct AbsenceDayOptions
{
    std::string file;
    std::int32_t student = 0;
    std::string date;
    std::vector<int> lessons; // none: all that the student attends
    std::string reason = "unexcused";
    std::optional<int> hours;
    bool yes = false;
};

void setHours(journals::DayAbsences& day, const AbsenceDayOptions& options, int subgroup, int hours)
{
    const bool excused = options.reason == "excused";
    std::vector<int> found;
    for (const std::size_t position : day.attended(subgroup)) {
        auto& [lesson, absence] = day.lessons[position];
        if (!options.lessons.empty() && std::ranges::count(options.lessons, lesson.number) == 0)
            continue;
        absence = excused ? journals::Absence{hours, 0} : journals::Absence{0, hours};
        found.push_back(lesson.number);
    }
    for (const int number : options.lessons)
        if (std::ranges::count(found, number) == 0)
            throw Failure(
                worded(u"У студента в этот день нет занятия № "_s + QString::number(number)));
    if (found.empty())
        throw Failure(worded(u"Занятий в этот день нет."_s));
}

void print(std::ostream& out, const journals::DayAbsences& day)
{
    const auto text = [](const QString& value) { return value.toStdString(); };
    std::vector<Row> rows;
    for (const auto& [lesson, hours] : day.lessons)
        rows.push_back({std::to_string(lesson.number), text(lesson.disciplineName),
                        std::to_string(lesson.subgroup), std::to_string(hours.unexcused),
                        std::to_string(hours.excused)});
    rows.push_back({"", "ИТОГО:", "", std::to_string(day.total().unexcused),
                    std::to_string(day.total().excused)});
    printAligned(out, {"№", worded(u"Дисциплина"_s), "П/г", "Неуважительные", "Уважительные"},
                 rows);
}

void run(const AbsenceDayOptions& options, Streams streams)
{
    const QDate date = dateArgument(options.date);
    TerminalPrompt prompt(streams.err, options.yes);
    const auto journal = openJournal(options.file, prompt);
    jet::Database& database = journal->database();
    requireStudent(database, options.student);
    const auto student = journals::readStudentHead(database, journals::StudentId{options.student});
    if (!student)
        throw Failure(worded(u"У студента нет группы."_s));
    const journals::AbsenceEntry entry(database, *student, date);
    journals::DayAbsences day = entry.readDay();
    setHours(day, options, student->subgroup, options.hours.value_or(entry.lessonHours()));
    const QStringList lost = day.unplacedTexts();
    if (!lost.isEmpty()
        && !prompt.question(u"Удалить пропуски, которые не относятся ни к одному занятию?"_s,
                            shell::Answer::No))
        throw Failure(worded(u"Не относятся ни к одному занятию и были бы удалены (--yes): "_s
                             + lost.join(u"; "_s)));
    journals::History history(database);
    entry.saveDay(history, day);
    print(streams.out, entry.readDay());
}

} // namespace

void addAbsenceDay(CLI::App& program, Streams streams)
{
    Command<AbsenceDayOptions> command(program, "absence-day",
                                       "Записать пропуски студента за день");
    auto& options = *command.options;
    command.app.add_option("FILE", options.file, "Файл журнала")->required();
    command.app.add_option("--student", options.student, "Номер студента")->required();
    command.app.add_option("--date", options.date, "Дата, ГГГГ-ММ-ДД")->required();
    command.app
        .add_option("--lesson", options.lessons,
                    "Номер занятия в дне, можно несколько; без него все занятия студента")
        ->check(CLI::Range(0, 99));
    command.app
        .add_option("--hours", options.hours,
                    "Часов за занятие, 0 удаляет пропуск; без него часы одного занятия")
        ->check(CLI::Range(0, journals::kMostAbsenceHours));
    command.app.add_option("--reason", options.reason, "Причина: unexcused или excused")
        ->check(CLI::IsMember({"excused", "unexcused"}));
    command.app.add_flag("--yes", options.yes,
                         "Удалить пропуски дня, которые не относятся ни к одному занятию");
    command.calls([streams](const AbsenceDayOptions& values) { run(values, streams); });
}

} // namespace cli
