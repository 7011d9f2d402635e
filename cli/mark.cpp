#include "cli/command.h"
#include "cli/journalfile.h"
#include "journals/attendance.h"
#include "shell/settings.h"

#include <ostream>

namespace cli {

namespace {

struct MarkOptions
{
    std::string file;
    std::int32_t student = 0;
    std::string discipline;
    std::string date;
    int lesson = 0;
};

void run(const MarkOptions& options, Streams streams)
{
    const QDate date = dateArgument(options.date);
    TerminalPrompt prompt(streams.err);
    const auto journal = openJournal(options.file, prompt);
    jet::Database& database = journal->database();
    const auto discipline = findDiscipline(database, options.discipline);
    requireStudent(database, options.student);
    LastStatus status;
    journals::Attendance attendance(database, shell::Settings().wording(), prompt, status);
    const QString text = attendance.mark(
        journals::StudentId(options.student),
        journals::DisciplineId(static_cast<std::int32_t>(discipline)), date, options.lesson);
    if (prompt.refused())
        throw Failure(prompt.refusal().toStdString());
    streams.out << text.toStdString() << '\n';
}

} // namespace

void addMark(CLI::App& program, Streams streams)
{
    Command<MarkOptions> command(program, "mark", "Поставить пропуск одного занятия");
    auto& options = *command.options;
    command.app.add_option("FILE", options.file, "Файл журнала")->required();
    command.app.add_option("--student", options.student, "Номер студента")->required();
    command.app.add_option("--discipline", options.discipline, "Дисциплина: номер или имя")
        ->required();
    command.app.add_option("--date", options.date, "Дата занятия, ГГГГ-ММ-ДД")->required();
    command.app.add_option("--lesson", options.lesson, "Номер занятия в дне")
        ->required()
        ->check(CLI::Range(0, 99));
    command.calls([streams](const MarkOptions& values) { run(values, streams); });
}

} // namespace cli
