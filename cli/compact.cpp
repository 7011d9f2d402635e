#include "jet/compact.h"
#include "cli/command.h"
#include "data/convert.h"

#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>

namespace cli {

namespace {

struct CompactOptions
{
    std::string file, target;
    bool repair = false, encoded = false, plain = false;
};

std::filesystem::path pathOf(const std::string& argument)
{
    return data::toPath(data::fromUtf8(argument));
}

// "1,4 МБ", below that whole kilobytes.
std::string sizeText(std::uint64_t bytes)
{
    constexpr std::uint64_t kKilo = 1024, kMega = kKilo * kKilo;
    if (bytes < kMega)
        return std::to_string((bytes + kKilo - 1) / kKilo) + " КБ";
    const std::uint64_t tenths = (10 * bytes + kMega / 2) / kMega;
    return std::to_string(tenths / 10) + ',' + std::to_string(tenths % 10) + " МБ";
}

void print(std::ostream& out, const jet::Loss& loss)
{
    out << "  ";
    if (!loss.table.empty())
        out << loss.table << ": ";
    if (loss.page != 0)
        out << "страница " << loss.page << ": ";
    if (loss.row >= 0)
        out << "строка " << loss.row << ": ";
    out << loss.text << '\n';
}

void run(const CompactOptions& options, Streams streams)
{
    jet::CompactOptions wanted;
    wanted.repair = options.repair;
    if (options.encoded || options.plain)
        wanted.encoded = options.encoded;
    const jet::CompactReport report =
        jet::compactDatabase(pathOf(options.file), pathOf(options.target), wanted);
    streams.out << "Размер был " << sizeText(report.bytesBefore) << ", стал "
                << sizeText(report.bytesAfter) << ".\n"
                << "Таблиц: " << report.tables << ", записей: " << report.rows << ".\n";
    if (options.repair)
        streams.out << "Потерь и исправлений: " << report.losses.size() << ".\n";
    for (const jet::Loss& loss : report.losses)
        print(streams.out, loss);
}

} // namespace

void addCompact(CLI::App& program, Streams streams)
{
    Command<CompactOptions> command(program, "compact",
                                    "Записать файл базы данных заново, без пустых мест");
    command.app.add_option("FILE", command.options->file, "Файл базы данных")->required();
    command.app.add_option("OUT", command.options->target, "Путь к новому файлу")->required();
    command.app.add_flag("--repair", command.options->repair,
                         "Спасти из повреждённого файла всё, что читается");
    CLI::Option* const encoded =
        command.app.add_flag("--encoded", command.options->encoded, "Новый файл закодировать");
    command.app
        .add_flag("--plain", command.options->plain,
                  "Новый файл не кодировать, даже если старый был "
                  "закодирован")
        ->excludes(encoded);
    command.calls([streams](const CompactOptions& options) { run(options, streams); });
}

} // namespace cli
