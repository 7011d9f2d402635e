#include "cli/command.h"
#include "cli/journalfile.h"
#include "journals/history.h"
#include "journals/periodabsence.h"

#include <algorithm>
#include <optional>
#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

struct AbsencePeriodOptions
{
    std::string file;
    std::vector<std::int32_t> students;
    std::string from;
    std::string to;
    std::string reason = "unexcused";
    std::optional<int> subgroup;
    bool yes = false;
};

// Of several lessons at one time, that of the subgroup asked for or else of the student's own.
void settle(journals::PeriodAbsence& period, std::optional<int> subgroup)
{
    while (const auto conflict = period.conflict()) {
        const int wanted = subgroup.value_or(conflict->student.subgroup);
        const auto lesson = std::ranges::find_if(
            conflict->lessons, [wanted](const auto& each) { return each.subgroup == wanted; });
        if (lesson == conflict->lessons.end())
            throw Failure(worded(conflict->student.name + u": в одно время несколько занятий, "_s
                                 + conflict->lessons.front().date.toString(Qt::ISODate)
                                 + u". Укажите --subgroup. "_s + conflict->texts().join(u"; "_s)));
        period.choose(static_cast<std::size_t>(lesson - conflict->lessons.begin()), false);
    }
}

void run(const AbsencePeriodOptions& options, Streams streams)
{
    journals::PeriodRequest request;
    request.from = dateArgument(options.from);
    request.to = dateArgument(options.to);
    request.reason = options.reason == "excused" ? journals::AbsenceKind::Excused
                                                 : journals::AbsenceKind::Unexcused;
    TerminalPrompt prompt(streams.err, options.yes);
    const auto journal = openJournal(options.file, prompt);
    jet::Database& database = journal->database();
    for (const std::int32_t student : options.students) {
        requireStudent(database, student);
        request.students.push_back(journals::StudentId{student});
    }
    journals::PeriodAbsence period(database, request);
    if (!period.problem().isEmpty())
        throw Failure(worded(period.problem()));
    const QString question = period.namesakesQuestion();
    if (!question.isEmpty() && !prompt.question(question, shell::Answer::No))
        throw Failure(question.toStdString() + " (--yes)");
    settle(period, options.subgroup);
    journals::History history(database);
    LastStatus status;
    streams.out << worded(period.write(history, status).text()) << '\n';
}

} // namespace

void addAbsencePeriod(CLI::App& program, Streams streams)
{
    Command<AbsencePeriodOptions> command(program, "absence-period",
                                          "Записать пропуск всех занятий за период");
    auto& options = *command.options;
    command.app.add_option("FILE", options.file, "Файл журнала")->required();
    command.app.add_option("--student", options.students, "Номер студента, можно несколько")
        ->required();
    command.app.add_option("--from", options.from, "Первый день, ГГГГ-ММ-ДД")->required();
    command.app.add_option("--to", options.to, "Последний день, ГГГГ-ММ-ДД")->required();
    command.app.add_option("--reason", options.reason, "Причина: unexcused или excused")
        ->check(CLI::IsMember({"excused", "unexcused"}));
    command.app.add_option(
        "--subgroup", options.subgroup,
        "Подгруппа, когда в одно время несколько занятий; без нее подгруппа студента");
    command.app.add_flag("--yes", options.yes, "Записать пропуски и полным тезкам студента");
    command.calls([streams](const AbsencePeriodOptions& values) { run(values, streams); });
}

} // namespace cli
