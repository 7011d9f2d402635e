#include "cli/command.h"
#include "cli/journalfile.h"

namespace cli {

void addCheck(CLI::App& program, Streams streams)
{
    struct Options
    {
        std::string file;
    };
    Command<Options> command(program, "check", "Открыть, проверить и обновить файл журнала");
    command.app.add_option("FILE", command.options->file, "Файл журнала")->required();
    command.calls([streams](const Options& options) {
        TerminalPrompt prompt(streams.out);
        openJournal(options.file, prompt);
        streams.out << "Файл в порядке.\n";
    });
}

} // namespace cli
