#include "cli/usage.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace cli {

namespace {

constexpr const char* kOptions = "Параметры";

// What CLI11 says behind the last ": ", which is the part that names something of the caller's.
std::string subjectOf(const std::string& text)
{
    const auto colon = text.rfind(": ");
    return colon == std::string::npos ? text : text.substr(colon + 2);
}

} // namespace

void speakRussian(CLI::App& program)
{
    const auto formatter = std::make_shared<CLI::Formatter>();
    for (const auto& [english, russian] : {
             std::pair{"Usage", "Вызов"},
             {"OPTIONS", "ПАРАМЕТРЫ"},
             {"Positionals", "Аргументы"},
             {"SUBCOMMAND", "КОМАНДА"},
             {"REQUIRED", "(обязательно)"},
             {"TEXT", "ТЕКСТ"},
             {"INT", "ЧИСЛО"},
             {"UINT", "ЧИСЛО"},
         })
        formatter->label(english, russian);
    program.formatter(formatter);
    program.option_defaults()->group(kOptions);
    program.set_help_flag("-h,--help", "Показать эту справку");
}

std::string usageText(const CLI::ParseError& error)
{
    const std::string text = error.what();
    const std::string hint = " Справка: jurnalctl --help";
    const auto code = static_cast<CLI::ExitCodes>(error.get_exit_code());
    if (code == CLI::ExitCodes::RequiredError) {
        constexpr std::string_view kTail = " is required";
        if (text.starts_with("A subcommand") || !text.ends_with(kTail))
            return "Не указана команда." + hint;
        return "Не указан параметр " + text.substr(0, text.size() - kTail.size()) + '.' + hint;
    }
    if (code == CLI::ExitCodes::RequiresError) {
        constexpr std::string_view kMiddle = " requires ";
        const auto middle = std::min(text.find(kMiddle), text.size());
        return "Параметр " + text.substr(0, middle) + " указывают только вместе с параметром "
               + text.substr(std::min(middle + kMiddle.size(), text.size())) + '.' + hint;
    }
    if (code == CLI::ExitCodes::ExtrasError)
        return "Лишнее или неизвестное в команде: " + subjectOf(text) + '.' + hint;
    if (code == CLI::ExitCodes::ArgumentMismatch)
        return "Не хватает значения параметра " + text.substr(0, text.find(':')) + '.' + hint;
    return "Неверное значение: " + subjectOf(text) + '.' + hint;
}

} // namespace cli
