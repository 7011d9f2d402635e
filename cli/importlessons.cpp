#include "cli/command.h"
#include "cli/journalfile.h"
#include "cli/output.h"
#include "data/convert.h"
#include "import/importtexts.h"
#include "shell/settings.h"

#include <nlohmann/json.hpp>

#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

struct ImportLessonsOptions
{
    std::string file;
    std::string source;
    std::string from;
    std::string to;
    bool dryRun = false;
    bool json = false;
};

void printCounts(const ImportLessonsOptions& options, Streams streams,
                 const imports::ImportCounts& counts, const imports::LessonChoice& choice,
                 const shell::Wording& wording)
{
    const auto lines = imports::summary(counts, wording);
    if (options.json) {
        auto tables = nlohmann::ordered_json::array();
        for (const auto& [table, rows] : lines)
            tables.push_back({{"name", table.toStdString()},
                              {"added", rows.added},
                              {"updated", rows.updated},
                              {"unchanged", rows.unchanged}});
        printJson(streams.out, {{"lessons", counts.lessons},
                                {"skipped", choice.lessons.size() - choice.complete},
                                {"tables", tables}});
        return;
    }
    if (!options.dryRun)
        streams.out << imports::doneText(counts, wording).toStdString() << '\n';
    std::vector<Row> rows;
    for (const auto& [table, row] : lines)
        rows.push_back({table.toStdString(), std::to_string(row.added), std::to_string(row.updated),
                        std::to_string(row.unchanged)});
    printAligned(streams.out, {"Таблица", "Добавлено", "Изменено", "Без изменений"}, rows);
}

void run(const ImportLessonsOptions& options, Streams streams)
{
    const imports::Period period{dateArgument(options.from), dateArgument(options.to)};
    if (const QString why = imports::problem(period); !why.isEmpty())
        throw Failure(why.toStdString());
    TerminalPrompt prompt(streams.err);
    const auto journal = openJournal(options.file, prompt);
    const auto timetable =
        imports::Timetable::open(data::fromUtf8(options.source), journal->filePath());
    const imports::LessonChoice choice = imports::chooseLessons(*timetable, period);
    if (imports::isEmpty(*timetable, choice))
        throw Failure(imports::emptyText().toStdString());
    jet::Database& database = journal->database();
    const shell::Wording wording = shell::Settings().wording();
    const std::int64_t there = imports::lessonsThere(database, period, choice);
    const imports::ImportCounts counts =
        options.dryRun ? imports::tryImport(*timetable, period, choice, database)
                       : *imports::importLessons(*timetable, period, choice, database);
    if (there > 0)
        prompt.information(imports::thereText(there, wording));
    for (const QString& note :
         {imports::skippedText(choice, wording), imports::shortenedText(counts)})
        if (!note.isEmpty())
            prompt.information(note);
    printCounts(options, streams, counts, choice, wording);
}

} // namespace

void addImportLessons(CLI::App& program, Streams streams)
{
    Command<ImportLessonsOptions> command(program, "import-lessons",
                                          "Перенести занятия из базы данных расписания");
    auto& options = *command.options;
    command.app.add_option("FILE", options.file, "Файл журнала")->required();
    command.app.add_option("SOURCE", options.source, "Файл базы данных расписания")->required();
    command.app.add_option("--from", options.from, "Первый день, ГГГГ-ММ-ДД")->required();
    command.app.add_option("--to", options.to, "Последний день, ГГГГ-ММ-ДД")->required();
    command.app.add_flag("--dry-run", options.dryRun, "Только подсчитать, журнал не изменять");
    command.app.add_flag("--json", options.json, "Вывести один документ JSON");
    command.calls([streams](const ImportLessonsOptions& values) { run(values, streams); });
}

} // namespace cli
