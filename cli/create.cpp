#include "cli/command.h"
#include "cli/journalfile.h"

namespace cli {

void addCreate(CLI::App& program, Streams streams)
{
    struct Options
    {
        std::string file;
    };
    Command<Options> command(program, "create", "Создать новый файл журнала");
    command.app.add_option("FILE", command.options->file, "Путь к новому файлу")->required();
    command.calls([streams](const Options& options) {
        TerminalPrompt prompt(streams.err);
        createJournal(options.file, prompt);
    });
}

} // namespace cli
