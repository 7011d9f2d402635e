#include "reports/report.h"
#include "cli/command.h"
#include "cli/journalfile.h"
#include "papers/workbook.h"
#include "reports/worded.h"
#include "shell/settings.h"

#include "data/convert.h"
#include "data/settingsrow.h"

#include <QDir>

#include <map>
#include <optional>
#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

using reports::Input;
using reports::ReportKind;
using reports::ReportRequest;
using reports::SubjectView;

struct ReportOptions
{
    ReportKind kind = ReportKind::Attendance;
    std::string file;
    std::string output;
    std::string group;
    std::string discipline;
    std::int32_t student = 0;
    int month = 0;
    int year = 0;
    std::optional<int> months;
    std::string from;
    std::string to;
    std::optional<SubjectView> view;
    bool each = false;
    bool balances = false;
};

const std::map<std::string, ReportKind>& kinds()
{
    static const std::map<std::string, ReportKind> names = {
        {"attendance", ReportKind::Attendance},
        {"grades-month", ReportKind::GradesMonth},
        {"grades-subject", ReportKind::GradesSubject},
        {"card", ReportKind::Card},
        {"final", ReportKind::Final},
        {"summary", ReportKind::Summary},
        {"truancy-teachers", ReportKind::TruancyTeachers},
        {"truancy-groups", ReportKind::TruancyGroups},
        {"truancy-teachers-groups", ReportKind::TruancyBoth},
    };
    return names;
}

ReportRequest request(jet::Database& database, const ReportOptions& options)
{
    ReportRequest wanted;
    wanted.kind = options.kind;
    wanted.view = options.view.value_or(SubjectView::Current);
    wanted.month = {options.year, options.month};
    wanted.months = options.months.value_or(1);
    wanted.balances = options.balances;
    if (!options.group.empty())
        wanted.group =
            journals::GroupId(static_cast<std::int32_t>(findGroup(database, options.group)));
    if (!options.discipline.empty())
        wanted.discipline = journals::DisciplineId(
            static_cast<std::int32_t>(findDiscipline(database, options.discipline)));
    if (options.student != 0) {
        requireStudent(database, options.student);
        wanted.student = journals::StudentId(options.student);
    }
    if (!options.from.empty())
        wanted.period.from = dateArgument(options.from);
    if (!options.to.empty())
        wanted.period.to = dateArgument(options.to);
    return wanted;
}

// What the document needs, and what says nothing to it, is known only when its kind is.
void checkInputs(const ReportOptions& options)
{
    ReportRequest wanted;
    wanted.kind = options.kind;
    wanted.view = options.view.value_or(SubjectView::Current);
    const auto check = [&](const char* name, Input input, bool isGiven, bool isRequired = false) {
        if (isRequired && takes(wanted, input) && !isGiven)
            throw CLI::RequiredError(name);
        if (isGiven && !takes(wanted, input))
            throw CLI::ValidationError(name, std::string(name) + " этому документу не указывают");
    };
    check("--month", Input::Month, options.month != 0, true);
    check("--year", Input::Month, options.year != 0, true);
    check("--months", Input::Months, options.months.has_value());
    check("--from", Input::Period, !options.from.empty(), true);
    check("--to", Input::Period, !options.to.empty(), true);
    check("--group", Input::Group, !options.group.empty());
    check("--discipline", Input::Discipline, !options.discipline.empty());
    check("--student", Input::Student, options.student != 0);
    check("--each", Input::Student, options.each);
    check("--balances", Input::Balances, options.balances);
    check("--view", Input::View, options.view.has_value());
}

void write(const papers::Document& document, const ReportOptions& options)
{
    const QString output = data::fromUtf8(options.output);
    if (!options.each) {
        papers::writeWorkbook(document, output);
        return;
    }
    if (!QDir().mkpath(output))
        throw Failure("папку нельзя создать: " + options.output);
    for (const papers::Document& part : reports::onePerPerson(document))
        papers::writeWorkbook(part, QDir(output).filePath(papers::fileName(part)));
}

void run(const ReportOptions& options, Streams streams)
{
    checkInputs(options);
    TerminalPrompt prompt(streams.err);
    const auto journal = openJournal(options.file, prompt);
    jet::Database& database = journal->database();
    const ReportRequest wanted = request(database, options);
    if (const auto problem = requestProblem(wanted))
        throw Failure(problem->toStdString());
    const reports::StatementSource source{database, data::readSettingsRow(database),
                                          shell::Settings().wording()};
    const auto document = makeReport(source, wanted);
    if (!document || document->papers.empty())
        throw Failure(reports::worded(source.wording,
                                      u"Документ пуст: нет ни одной группы или ни одного "
                                      "студента."_s)
                          .toStdString());
    write(*document, options);
}

} // namespace

void addReport(CLI::App& program, Streams streams)
{
    Command<ReportOptions> command(program, "report", "Ведомость, табель или отчет в книгу .xlsx");
    auto& options = *command.options;
    command.app
        .add_option("KIND", options.kind,
                    "attendance, grades-month, grades-subject, card, final, summary, "
                    "truancy-teachers, truancy-groups, truancy-teachers-groups")
        ->required()
        ->transform(CLI::CheckedTransformer(kinds()));
    command.app.add_option("FILE", options.file, "Файл журнала")->required();
    command.app.add_option("-o,--output", options.output, "Новая книга .xlsx")->required();
    command.app.add_option("--group", options.group, "Группа: номер или имя; без нее - все");
    command.app.add_option("--discipline", options.discipline, "Дисциплина: номер или имя");
    command.app.add_option("--student", options.student, "Номер студента")
        ->check(CLI::PositiveNumber);
    command.app.add_option("--month", options.month, "Месяц, 1-12")->check(CLI::Range(1, 12));
    command.app.add_option("--year", options.year, "Год");
    command.app.add_option("--months", options.months, "Для summary: сколько месяцев подряд, 1-12")
        ->check(CLI::Range(1, reports::kMostMonths));
    command.app.add_option("--from", options.from, "Начало периода, ГГГГ-ММ-ДД");
    command.app.add_option("--to", options.to, "Конец периода, ГГГГ-ММ-ДД");
    const std::map<std::string, SubjectView> views = {{"current", SubjectView::Current},
                                                      {"periodic", SubjectView::Periodic},
                                                      {"combined", SubjectView::Combined}};
    command.app
        .add_option("--view", options.view,
                    "Для grades-subject. current: дни месяца, periodic: месяцы учебного года, "
                    "combined: все дисциплины группы")
        ->transform(CLI::CheckedTransformer(views));
    command.app.add_flag("--balances", options.balances,
                         "Для attendance: часы с 1 сентября на начало и конец месяца");
    command.app.add_flag("--each", options.each,
                         "Для card: отдельный файл на каждого студента, --output - папка");
    command.calls([streams](const ReportOptions& values) { run(values, streams); });
}

} // namespace cli
