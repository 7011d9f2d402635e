#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <iosfwd>
#include <memory>
#include <stdexcept>
#include <string>

namespace cli {

// Refused or failed: what() goes to standard error as one line and the exit status is 1.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct Streams
{
    std::ostream& out;
    std::ostream& err;
};

// Each adds its command and options to the program; the command does its work when the
// arguments were parsed, and throws Failure or jet::Error.
void addAbsenceDay(CLI::App& program, Streams streams);
void addAbsencePeriod(CLI::App& program, Streams streams);
void addAttendance(CLI::App& program, Streams streams);
void addCheck(CLI::App& program, Streams streams);
void addCompact(CLI::App& program, Streams streams);
void addCreate(CLI::App& program, Streams streams);
void addDemo(CLI::App& program, Streams streams);
void addFinals(CLI::App& program, Streams streams);
void addGrades(CLI::App& program, Streams streams);
void addImportLessons(CLI::App& program, Streams streams);
void addImportList(CLI::App& program, Streams streams);
void addMark(CLI::App& program, Streams streams);
void addRanking(CLI::App& program, Streams streams);
void addReport(CLI::App& program, Streams streams);
void addSchema(CLI::App& program, Streams streams);
void addSql(CLI::App& program, Streams streams);
void addTables(CLI::App& program, Streams streams);

// A command whose option values are one struct `Options`: it lives as long as the program,
// and `run` gets it filled in.
template <class Options>
struct Command
{
    CLI::App& app;
    std::shared_ptr<Options> options = std::make_shared<Options>();

    Command(CLI::App& program, const std::string& name, const std::string& description)
        : app(*program.add_subcommand(name, description))
    {
        app.group("Команды");
        app.get_help_ptr()->group("Параметры");
    }
    void calls(std::function<void(const Options&)> run)
    {
        app.callback([values = options, run = std::move(run)] { run(*values); });
    }
};

} // namespace cli
