#include "journals/attendance.h"
#include "cli/command.h"
#include "cli/journalfile.h"
#include "cli/output.h"
#include "shell/settings.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

using Json = nlohmann::ordered_json;
using journals::AttendanceMode;
using journals::AttendanceSheet;

struct AttendanceOptions
{
    std::string file;
    std::string group;
    int month = 0;
    int year = 0;
    std::string discipline;
    int subgroup = -1;
    AttendanceMode mode = AttendanceMode::Days;
    bool json = false;
};

journals::AttendanceSelection selection(jet::Database& database, const AttendanceOptions& options)
{
    journals::AttendanceSelection chosen;
    chosen.group = journals::GroupId(static_cast<std::int32_t>(findGroup(database, options.group)));
    if (!options.discipline.empty())
        chosen.discipline = journals::DisciplineId(
            static_cast<std::int32_t>(findDiscipline(database, options.discipline)));
    if (options.subgroup >= 0)
        chosen.subgroup = options.subgroup;
    chosen.month = {options.year, options.month};
    chosen.mode = options.mode;
    return chosen;
}

Json cells(const AttendanceSheet& sheet, std::size_t student)
{
    auto list = Json::array();
    for (std::size_t column = 0; column < sheet.columns.size(); ++column)
        if (sheet.state(student, column) == journals::AbsenceState::NotInForce)
            list.push_back("X");
        else
            list.push_back(sheet.cell(student, column).total());
    return list;
}

void printAsJson(std::ostream& out, const AttendanceSheet& sheet)
{
    auto columns = Json::array();
    for (const auto& column : sheet.columns)
        columns.push_back(column.title.toStdString());
    auto students = Json::array();
    for (std::size_t i = 0; i < sheet.students.size(); ++i) {
        const auto& student = sheet.students[i];
        students.push_back({{"id", journals::keyNumber(student.id)},
                            {"name", student.name.toStdString()},
                            {"start", student.start.total()},
                            {"cells", cells(sheet, i)},
                            {"month", student.month.total()},
                            {"end", student.end().total()},
                            {"endUnexcused", student.end().unexcused}});
    }
    auto all = Json::array();
    auto unexcused = Json::array();
    for (const auto& total : sheet.columnTotals) {
        all.push_back(total.total());
        unexcused.push_back(total.unexcused);
    }
    printJson(out, {{"columns", columns},
                    {"students", students},
                    {"totals", {{"all", all}, {"unexcused", unexcused}}}});
}

Row totalRow(const AttendanceSheet& sheet, const std::string& title, bool unexcusedOnly)
{
    const auto part = [&](const journals::Absence& absence) {
        return std::to_string(unexcusedOnly ? absence.unexcused : absence.total());
    };
    Row row = {"", title, ""};
    for (const auto& total : sheet.columnTotals)
        row.push_back(part(total));
    row.insert(row.end(), {part(sheet.monthTotal()), part(sheet.endTotal()), ""});
    return row;
}

void printAsText(std::ostream& out, const AttendanceSheet& sheet)
{
    Row header = {"№", worded(u"ФИО студента"_s), "На начало"};
    for (const auto& column : sheet.columns)
        header.push_back(column.title.toStdString());
    header.insert(header.end(), {"Месяц", "На конец", "Неуваж."});
    std::vector<Row> rows;
    for (std::size_t i = 0; i < sheet.students.size(); ++i) {
        const auto& student = sheet.students[i];
        Row row = {std::to_string(i + 1), student.name.toStdString(),
                   std::to_string(student.start.total())};
        for (std::size_t column = 0; column < sheet.columns.size(); ++column)
            row.push_back(sheet.cellText(i, column).toStdString());
        row.insert(row.end(),
                   {std::to_string(student.month.total()), std::to_string(student.end().total()),
                    std::to_string(student.end().unexcused)});
        rows.push_back(std::move(row));
    }
    rows.push_back(totalRow(sheet, "Итого за день, час.", false));
    rows.push_back(totalRow(sheet, "в т.ч. неуважительных, час.", true));
    printAligned(out, header, rows);
}

void run(const AttendanceOptions& options, Streams streams)
{
    TerminalPrompt prompt(streams.err);
    const auto journal = openJournal(options.file, prompt);
    LastStatus status;
    journals::Attendance attendance(journal->database(), shell::Settings().wording(), prompt,
                                    status);
    const auto chosen = selection(journal->database(), options);
    if (chosen.mode == AttendanceMode::Lessons && !attendance.allowLessonMode(chosen))
        throw Failure(prompt.refusal().toStdString());
    const auto sheet = attendance.load(chosen);
    if (!sheet)
        throw Failure(status.text().toStdString());
    for (const QString& notice : sheet->notices)
        streams.err << notice.toStdString() << '\n';
    if (options.json)
        printAsJson(streams.out, *sheet);
    else
        printAsText(streams.out, *sheet);
}

} // namespace

void addAttendance(CLI::App& program, Streams streams)
{
    Command<AttendanceOptions> command(program, "attendance",
                                       "Ведомость пропусков группы за месяц");
    auto& options = *command.options;
    command.app.add_option("FILE", options.file, "Файл журнала")->required();
    command.app.add_option("--group", options.group, "Группа: номер или имя")->required();
    command.app.add_option("--month", options.month, "Месяц, 1-12")
        ->required()
        ->check(CLI::Range(1, 12));
    command.app.add_option("--year", options.year, "Год")->required();
    command.app.add_option("--discipline", options.discipline, "Дисциплина: номер или имя");
    command.app.add_option("--subgroup", options.subgroup, "Подгруппа")->check(CLI::Range(0, 255));
    const std::map<std::string, AttendanceMode> modes = {{"day", AttendanceMode::Days},
                                                         {"lesson", AttendanceMode::Lessons}};
    command.app.add_option("--mode", options.mode, "day: по дням, lesson: по занятиям")
        ->transform(CLI::CheckedTransformer(modes));
    command.app.add_flag("--json", options.json, "Вывести JSON");
    command.calls([streams](const AttendanceOptions& values) { run(values, streams); });
}

} // namespace cli
