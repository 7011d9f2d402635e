#include "cli/command.h"
#include "cli/journalfile.h"
#include "cli/output.h"
#include "data/settingsrow.h"
#include "journals/gradebook.h"
#include "shell/settings.h"

#include <nlohmann/json.hpp>

#include <map>
#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

using Json = nlohmann::ordered_json;
using journals::GradeKind;
using journals::GradeMode;
using journals::GradePlace;
using journals::GradeSheet;

struct GradesOptions
{
    std::string file;
    std::string group;
    std::string discipline;
    GradeMode mode = GradeMode::Current;
    int month = 0;
    int year = 0;
    bool json = false;
};

journals::GradeSelection selection(jet::Database& database, const GradesOptions& options)
{
    journals::GradeSelection chosen;
    chosen.group = journals::GroupId(static_cast<std::int32_t>(findGroup(database, options.group)));
    chosen.discipline = journals::DisciplineId(
        static_cast<std::int32_t>(findDiscipline(database, options.discipline)));
    chosen.month = {options.year, options.month};
    chosen.year = journals::studyPeriod(data::readSettingsRow(database));
    chosen.mode = options.mode;
    return chosen;
}

// A mark is its number; "X" stands where no grade can, null where none is.
Json value(const GradeSheet& sheet, GradePlace place)
{
    const int grade = sheet.cell(place).grade;
    if (grade > journals::kPassGrade)
        return grade;
    const std::string text = sheet.cellText(place).toStdString();
    return text.empty() ? Json() : Json(text);
}

void printAsJson(std::ostream& out, const GradeSheet& sheet)
{
    // The final grade has a place of its own; where it is the only column, it is a cell too.
    const auto isCell = [&](std::size_t column) {
        return sheet.columns[column].kind != GradeKind::Final || sheet.columns.size() == 1;
    };
    auto columns = Json::array();
    for (std::size_t column = 0; column < sheet.columns.size(); ++column)
        if (isCell(column))
            columns.push_back(sheet.columns[column].title.toStdString());
    auto students = Json::array();
    for (std::size_t row = 0; row < sheet.students.size(); ++row) {
        auto cells = Json::array();
        Json final;
        for (std::size_t column = 0; column < sheet.columns.size(); ++column) {
            const Json grade = value(sheet, {static_cast<int>(row), static_cast<int>(column)});
            if (isCell(column))
                cells.push_back(grade);
            if (sheet.columns[column].kind == GradeKind::Final)
                final = grade;
        }
        students.push_back({{"id", journals::keyNumber(sheet.students[row].id)},
                            {"name", sheet.students[row].name.toStdString()},
                            {"cells", cells},
                            {"final", final}});
    }
    printJson(out, {{"columns", columns}, {"students", students}});
}

void printAsText(std::ostream& out, const GradeSheet& sheet)
{
    Row header = {"№", worded(u"ФИО студента"_s)};
    for (const auto& column : sheet.columns)
        header.push_back(column.title.toStdString());
    if (sheet.hasAverages())
        header.push_back("Средний");
    std::vector<Row> rows;
    for (std::size_t i = 0; i < sheet.students.size(); ++i) {
        Row row = {std::to_string(i + 1), sheet.students[i].name.toStdString()};
        for (std::size_t column = 0; column < sheet.columns.size(); ++column)
            row.push_back(
                sheet.cellText({static_cast<int>(i), static_cast<int>(column)}).toStdString());
        if (sheet.hasAverages())
            row.push_back(sheet.average(sheet.students[i]).text().toStdString());
        rows.push_back(std::move(row));
    }
    printAligned(out, header, rows);
}

void run(const GradesOptions& options, Streams streams)
{
    if (options.mode == GradeMode::Current && options.month == 0)
        throw CLI::RequiredError("--month");
    if (options.mode == GradeMode::Current && options.year == 0)
        throw CLI::RequiredError("--year");
    TerminalPrompt prompt(streams.err);
    const auto journal = openJournal(options.file, prompt);
    LastStatus status;
    journals::GradeBook book(journal->database(), shell::Settings().wording(), prompt, status);
    if (!book.load(selection(journal->database(), options)))
        throw Failure(status.text().toStdString());
    if (options.json)
        printAsJson(streams.out, *book.sheet());
    else
        printAsText(streams.out, *book.sheet());
}

} // namespace

void addGrades(CLI::App& program, Streams streams)
{
    Command<GradesOptions> command(program, "grades", "Журнал оценок группы по дисциплине");
    auto& options = *command.options;
    command.app.add_option("FILE", options.file, "Файл журнала")->required();
    command.app.add_option("--group", options.group, "Группа: номер или имя")->required();
    command.app.add_option("--discipline", options.discipline, "Дисциплина: номер или имя")
        ->required();
    const std::map<std::string, GradeMode> modes = {{"current", GradeMode::Current},
                                                    {"monthly", GradeMode::Monthly},
                                                    {"final", GradeMode::Final}};
    command.app
        .add_option("--mode", options.mode,
                    "current: текущие оценки месяца, monthly: за месяцы учебного года, final: "
                    "итоговые за учебный год")
        ->required()
        ->transform(CLI::CheckedTransformer(modes));
    command.app.add_option("--month", options.month, "Месяц, 1-12")->check(CLI::Range(1, 12));
    command.app.add_option("--year", options.year, "Год");
    command.app.add_flag("--json", options.json, "Вывести JSON");
    command.calls([streams](const GradesOptions& values) { run(values, streams); });
}

} // namespace cli
