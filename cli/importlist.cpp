#include "cli/command.h"
#include "cli/journalfile.h"
#include "cli/output.h"
#include "data/convert.h"
#include "import/lists/listimport.h"
#include "jet/text.h"
#include "shell/session.h"
#include "shell/settings.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <ostream>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

using imports::ExistingRow;
using imports::RowOutcome;
using refbooks::Book;

struct ImportListOptions
{
    std::string book;
    std::string file;
    std::string source;
    std::string sheet;
    std::string group;
    std::vector<std::string> map;
    ExistingRow existing = ExistingRow::Skip;
    bool createMissing = false;
    bool dryRun = false;
    bool json = false;
};

// A book by its number or the name of its table.
Book bookNamed(const std::string& text)
{
    for (int code = 0; code < refbooks::kBookCodes; ++code) {
        const std::string_view table = refbooks::catalogue()[static_cast<std::size_t>(code)].table;
        if (!table.empty() && (text == std::to_string(code) || jet::sameName(text, table))
            && static_cast<Book>(code) != Book::Lessons)
            return static_cast<Book>(code);
    }
    throw Failure("Нет такого справочника: " + text);
}

// "Столбец=Поле": the column's head as in the file, the field's caption or name.
void mapColumn(const std::string& text, Book book, const imports::ListImport& import,
               imports::ListChoice& choice)
{
    const QString line = data::fromUtf8(text);
    const QString head = line.section(u'=', 0, 0).trimmed();
    const QString name = line.section(u'=', 1).trimmed();
    const int field = imports::fieldNamed(book, import.fields(), name);
    if (field == imports::kNoField && !name.isEmpty())
        throw Failure("В справочнике нет поля: " + name.toStdString());
    const QStringList& heads = import.table().rows[choice.columns.headRow].cells;
    const auto column = std::ranges::find_if(heads, [&](const QString& each) {
        return each.trimmed().compare(head, Qt::CaseInsensitive) == 0;
    });
    if (column == heads.end())
        throw Failure("В файле нет графы: " + head.toStdString());
    std::ranges::replace(choice.columns.fields, field, imports::kNoField);
    choice.columns.fields[static_cast<std::size_t>(column - heads.begin())] = field;
}

std::string outcomeName(RowOutcome outcome)
{
    switch (outcome) {
    case RowOutcome::Added:
        return "added";
    case RowOutcome::Updated:
        return "updated";
    case RowOutcome::Skipped:
        return "skipped";
    case RowOutcome::Refused:
        break;
    }
    return "refused";
}

void printReport(const imports::ListReport& report, const QString& title, bool json,
                 std::ostream& out)
{
    if (!json) {
        out << report.text(title).toStdString();
        return;
    }
    auto rows = nlohmann::ordered_json::array();
    for (const imports::RowResult& row : report.rows)
        if (!row.reason.isEmpty())
            rows.push_back({{"row", row.number},
                            {"outcome", outcomeName(row.outcome)},
                            {"name", row.name.toStdString()},
                            {"reason", row.reason.toStdString()}});
    auto missing = nlohmann::ordered_json::array();
    for (const imports::MissingName& name : report.missing)
        missing.push_back({{"list", name.list.toStdString()},
                           {"name", name.name.toStdString()},
                           {"rows", name.rows},
                           {"created", name.isCreated}});
    printJson(out, {{"added", report.count(RowOutcome::Added)},
                    {"updated", report.count(RowOutcome::Updated)},
                    {"skipped", report.count(RowOutcome::Skipped)},
                    {"refused", report.count(RowOutcome::Refused)},
                    {"missing", missing},
                    {"rows", rows}});
}

imports::ListChoice choiceOf(const ImportListOptions& options, Book book, shell::Session& session,
                             const imports::ListImport& import)
{
    imports::ListChoice choice = import.guess();
    choice.existing = options.existing;
    choice.createMissing = options.createMissing;
    for (const std::string& text : options.map)
        mapColumn(text, book, import, choice);
    if (!options.group.empty())
        choice.group = static_cast<int>(findGroup(session.database(), options.group));
    return choice;
}

void run(const ImportListOptions& options, Streams streams)
{
    const Book book = bookNamed(options.book);
    if (!options.group.empty() && book != Book::Students)
        throw CLI::ValidationError("--group", "группу указывают только для списка студентов");
    TerminalPrompt prompt(streams.err);
    shell::Session session(shell::Settings().wording());
    session.openJournal(openJournal(options.file, prompt));
    const auto import =
        imports::ListImport::open(session, prompt, book,
                                  imports::readSource(session, data::fromUtf8(options.source),
                                                      data::fromUtf8(options.sheet)));
    if (!import)
        throw Failure(prompt.refusal().toStdString());
    const imports::ListChoice choice = choiceOf(options, book, session, *import);
    if (const QString why = import->problem(choice); !why.isEmpty())
        throw Failure(why.toStdString());
    const auto report = options.dryRun ? import->preview(choice) : import->run(choice);
    const QString action = options.dryRun ? u"Проверка: "_s : u"Импорт: "_s;
    printReport(*report, action + refbooks::bookTitle(book, session.wording()), options.json,
                streams.out);
    if (report->count(RowOutcome::Refused) == static_cast<int>(report->rows.size()))
        throw Failure("Не подошла ни одна строка.");
}

} // namespace

void addImportList(CLI::App& program, Streams streams)
{
    Command<ImportListOptions> command(program, "import", "Добавить в справочник список из файла");
    auto& options = *command.options;
    command.app.add_option("BOOK", options.book, "Справочник: номер или имя таблицы")->required();
    command.app.add_option("FILE", options.file, "Файл журнала")->required();
    command.app
        .add_option("SOURCE", options.source,
                    "Откуда: текст с разделителями, книга .xlsx или база данных .mdb")
        ->required();
    command.app.add_option("--sheet", options.sheet, "Лист книги или таблица базы данных");
    command.app.add_option("--group", options.group, "Группа студентов: номер или имя");
    command.app
        .add_option("--map", options.map,
                    "\"Столбец=Поле\": чем заполнить поле; \"Столбец=\": не брать столбец")
        ->allow_extra_args(false);
    const std::map<std::string, ExistingRow> existing = {{"skip", ExistingRow::Skip},
                                                         {"update", ExistingRow::Update},
                                                         {"add", ExistingRow::AddAnyway}};
    command.app
        .add_option("--existing", options.existing,
                    "Строки, которые уже есть: skip (пропустить), update (изменить), add "
                    "(добавить еще раз)")
        ->transform(CLI::CheckedTransformer(existing));
    command.app.add_flag("--create-missing", options.createMissing,
                         "Создать имена, которых нет в списках");
    command.app.add_flag("--dry-run", options.dryRun, "Только проверить, журнал не изменять");
    command.app.add_flag("--json", options.json, "Вывести один документ JSON");
    command.calls([streams](const ImportListOptions& values) { run(values, streams); });
}

} // namespace cli
