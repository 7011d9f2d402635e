#include "cli/program.h"

#include "cli/command.h"
#include "cli/usage.h"

#include <algorithm>
#include <exception>
#include <ostream>

namespace cli {

namespace {

// A message may hold line breaks; the promise to scripts is one line.
std::string oneLine(std::string text)
{
    std::ranges::replace(text, '\n', ' ');
    std::erase(text, '\r');
    return text;
}

void addCommands(CLI::App& program, Streams streams)
{
    addCreate(program, streams);
    addCheck(program, streams);
    addCompact(program, streams);
    addDemo(program, streams);
    addTables(program, streams);
    addSchema(program, streams);
    addSql(program, streams);
    addAbsenceDay(program, streams);
    addAbsencePeriod(program, streams);
    addAttendance(program, streams);
    addFinals(program, streams);
    addGrades(program, streams);
    addImportLessons(program, streams);
    addImportList(program, streams);
    addMark(program, streams);
    addRanking(program, streams);
    addReport(program, streams);
}

} // namespace

Status run(std::vector<std::string> arguments, Streams streams)
{
    CLI::App program("Журнал посещаемости и успеваемости из терминала", "jurnalctl");
    speakRussian(program);
    program.require_subcommand(1);
    program.set_version_flag("--version", PROGRAM_VERSION, "Показать версию программы");
    try {
        addCommands(program, streams);
        std::ranges::reverse(arguments); // as CLI11 takes a vector
        program.parse(std::move(arguments));
        return Status::Done;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) { // help or version was asked for
            program.exit(error, streams.out, streams.err);
            return Status::Done;
        }
        streams.err << usageText(error) << '\n';
        return Status::Usage;
    } catch (const std::exception& error) {
        streams.err << oneLine(error.what()) << '\n';
        return Status::Refused;
    }
}

} // namespace cli
