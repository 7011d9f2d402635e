#include "demo/demo.h"

#include "cli/command.h"
#include "cli/journalfile.h"
#include "data/convert.h"

#include <cstdint>
#include <ostream>

namespace cli {

void addDemo(CLI::App& program, Streams streams)
{
    struct Options
    {
        std::string file;
        std::string scale = "small";
        std::uint64_t seed = 1;
    };
    Command<Options> command(program, "demo", "Создать файл с демонстрационным учебным заведением");
    command.app.add_option("FILE", command.options->file, "Путь к новому файлу")->required();
    command.app
        .add_option("--scale", command.options->scale,
                    "Размер: small (3 группы), college (40), large (120)")
        ->check(CLI::IsMember({"small", "college", "large"}));
    command.app.add_option("--seed", command.options->seed, "Зерно случайных чисел");
    command.calls([streams](const Options& options) {
        TerminalPrompt prompt(streams.err);
        const auto summary = demo::build(data::fromUtf8(options.file),
                                         *demo::scaleByName(options.scale), options.seed, prompt);
        if (!summary)
            throw Failure(prompt.refusal().toStdString());
        streams.out << "Группы: " << summary->groups << ", студенты: " << summary->students
                    << ", занятия: " << summary->lessons << ", пропуски: " << summary->absences
                    << ", оценки: " << summary->grades << '\n';
    });
}

} // namespace cli
