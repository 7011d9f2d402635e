#include "reports/report.h"
#include "cli/command.h"
#include "cli/journalfile.h"
#include "papers/workbook.h"
#include "reports/worded.h"
#include "shell/settings.h"

#include "data/convert.h"
#include "data/settingsrow.h"

#include <map>
#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

using reports::Input;
using reports::ReportKind;
using reports::ReportRequest;
using reports::SubjectView;

struct Options
{
    ReportKind kind = ReportKind::Attendance;
    std::string file;
    std::string output;
    std::string group;
    std::string discipline;
    std::int32_t student = 0;
    int month = 0;
    int year = 0;
    std::string from;
    std::string to;
    SubjectView view = SubjectView::Current;
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

ReportRequest request(jet::Database& database, const Options& options)
{
    ReportRequest wanted;
    wanted.kind = options.kind;
    wanted.view = options.view;
    wanted.month = {options.year, options.month};
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

// What the document needs is known only when its kind is.
void requireInputs(const Options& options)
{
    ReportRequest wanted;
    wanted.kind = options.kind;
    wanted.view = options.view;
    if (takes(wanted, Input::Month) && options.month == 0)
        throw CLI::RequiredError("--month");
    if (takes(wanted, Input::Month) && options.year == 0)
        throw CLI::RequiredError("--year");
    if (takes(wanted, Input::Period) && options.from.empty())
        throw CLI::RequiredError("--from");
    if (takes(wanted, Input::Period) && options.to.empty())
        throw CLI::RequiredError("--to");
}

void run(const Options& options, Streams streams)
{
    requireInputs(options);
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
    papers::writeWorkbook(*document, data::fromUtf8(options.output));
}

} // namespace

void addReport(CLI::App& program, Streams streams)
{
    Command<Options> command(program, "report", "Ведомость, табель или отчет в книгу .xlsx");
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
    command.calls([streams](const Options& values) { run(values, streams); });
}

} // namespace cli
