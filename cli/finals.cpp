#include "cli/command.h"
#include "cli/journalfile.h"
#include "cli/output.h"
#include "journals/autofinals.h"
#include "journals/history.h"
#include "shell/session.h"
#include "shell/settings.h"

#include <map>
#include <numeric>
#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

using journals::FinalsKind;

struct FinalsOptions
{
    std::string file;
    std::string group;
    std::string discipline;
    FinalsKind kind = FinalsKind::Final;
    std::string from;
    std::string to;
    bool yes = false;
};

// What the choice cannot do without, or does not take.
void checkDates(const FinalsOptions& options)
{
    const bool needsFrom = options.kind == FinalsKind::Period || options.kind == FinalsKind::Month;
    if (needsFrom && options.from.empty())
        throw CLI::RequiredError("--from");
    if (options.kind == FinalsKind::Period && options.to.empty())
        throw CLI::RequiredError("--to");
    if (options.kind == FinalsKind::Month && !options.to.empty())
        throw CLI::ValidationError("--to", "с --kind month указывают только --from");
    if (options.kind == FinalsKind::Year && !(options.from.empty() && options.to.empty()))
        throw CLI::ValidationError("--from", "с --kind year даты не указывают");
}

journals::FinalsRequest request(shell::Session& session, const FinalsOptions& options)
{
    journals::FinalsRequest request;
    request.kind = options.kind;
    request.period = journals::studyPeriod(session.settings());
    if (!options.from.empty())
        request.period.from = dateArgument(options.from);
    if (!options.to.empty())
        request.period.to = dateArgument(options.to);
    request.month = journals::monthOf(request.period.from);
    request.group =
        journals::GroupId(static_cast<std::int32_t>(findGroup(session.database(), options.group)));
    request.discipline = journals::DisciplineId(
        static_cast<std::int32_t>(findDiscipline(session.database(), options.discipline)));
    return request;
}

void printPlan(std::ostream& out, const journals::FinalsPlan& plan)
{
    const auto text = [](const QString& value) { return value.toStdString(); };
    std::vector<Row> rows;
    for (const journals::PlannedGrade& row : plan.rows)
        rows.push_back({std::to_string(journals::keyNumber(row.student)), text(row.name),
                        text(row.date.toString(Qt::ISODate)), text(nowText(row)),
                        text(becomesText(row)), text(row.marks.text()),
                        std::to_string(row.marks.count)});
    printAligned(
        out, {"№", worded(u"ФИО студента"_s), "Дата", "Было", "Стало", "Средний", "Оценок"}, rows);
}

void run(const FinalsOptions& options, Streams streams)
{
    checkDates(options);
    TerminalPrompt prompt(streams.err, options.yes);
    shell::Session session(shell::Settings().wording());
    session.openJournal(openJournal(options.file, prompt));
    journals::AutoFinals finals(session, prompt);
    const auto plan = finals.plan(request(session, options));
    if (!plan)
        throw Failure(prompt.refusal().toStdString());
    std::vector<std::size_t> rows(plan->rows.size());
    std::iota(rows.begin(), rows.end(), std::size_t{0});
    journals::History history(session.database());
    if (!finals.carryOut(*plan, rows, history))
        throw Failure(prompt.refusal().toStdString());
    printPlan(streams.out, *plan);
    streams.out << outcomeText(outcomeOf(*plan, rows)).toStdString() << '\n';
}

} // namespace

void addFinals(CLI::App& program, Streams streams)
{
    Command<FinalsOptions> command(program, "finals",
                                   "Автоматический расчет итоговых и месячных оценок");
    auto& options = *command.options;
    command.app.add_option("FILE", options.file, "Файл журнала")->required();
    command.app.add_option("--group", options.group, "Группа: номер или имя")->required();
    command.app.add_option("--discipline", options.discipline, "Дисциплина: номер или имя")
        ->required();
    const std::map<std::string, FinalsKind> kinds = {{"final", FinalsKind::Final},
                                                     {"period", FinalsKind::Period},
                                                     {"month", FinalsKind::Month},
                                                     {"year", FinalsKind::Year}};
    command.app
        .add_option("--kind", options.kind,
                    "final: итог за период (по умолчанию за учебный год), period: за каждый месяц "
                    "периода, month: за месяц даты --from, year: за каждый месяц учебного года")
        ->required()
        ->transform(CLI::CheckedTransformer(kinds));
    command.app.add_option("--from", options.from, "Первый день, ГГГГ-ММ-ДД");
    command.app.add_option("--to", options.to, "Последний день, ГГГГ-ММ-ДД");
    command.app.add_flag("--yes", options.yes, "Заменить уже проставленные оценки");
    command.calls([streams](const FinalsOptions& values) { run(values, streams); });
}

} // namespace cli
