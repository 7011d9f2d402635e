#include "cli/journalfile.h"

#include "cli/command.h"
#include "data/convert.h"
#include "jet/sqltext.h"
#include "shell/settings.h"

#include <QDate>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

std::unique_ptr<data::Journal> journal(const std::string& path, bool create, TerminalPrompt& prompt)
{
    auto opened = data::Journal::openAndCheck(data::fromUtf8(path), create, prompt);
    if (!opened)
        throw Failure(prompt.refusal().toStdString());
    return opened;
}

// A book in which rows are named on the command line.
struct Book
{
    std::string table;
    std::string key;
    QString what; // "группа", as messages call it
};

Failure notFound(const QString& what, const std::string& text)
{
    return Failure("Не найдено: " + worded(what) + " " + text);
}

bool isNumber(const std::string& text)
{
    return !text.empty() && text.size() < 10
           && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::int64_t find(jet::Database& database, const Book& book, const std::string& text)
{
    const std::string from = "SELECT " + book.key + ", NAIM FROM " + book.table + " WHERE ";
    if (isNumber(text) && database.count(from + book.key + " = " + text + ';') > 0)
        return std::stoll(text);
    std::vector<std::int64_t> keys;
    auto rows = database.query(from + "NAIM = " + jet::sql::text(text) + ';');
    while (rows.next())
        if (rows.text("NAIM") == text)
            keys.push_back(rows.integer(book.key));
    if (keys.empty())
        throw notFound(book.what, text);
    if (keys.size() > 1)
        throw Failure("Такое имя не одно, укажите номер: " + worded(book.what) + " " + text);
    return keys.front();
}

} // namespace

std::unique_ptr<data::Journal> openJournal(const std::string& path, TerminalPrompt& prompt)
{
    return journal(path, false, prompt);
}

std::unique_ptr<data::Journal> createJournal(const std::string& path, TerminalPrompt& prompt)
{
    return journal(path, true, prompt);
}

std::string worded(const QString& text)
{
    return shell::Settings().wording().translate(text).toStdString();
}

std::int64_t findGroup(jet::Database& database, const std::string& text)
{
    return find(database, {"SPGRUP", "IDG", u"группа"_s}, text);
}

std::int64_t findDiscipline(jet::Database& database, const std::string& text)
{
    return find(database, {"SPPRED", "IDD", u"дисциплина"_s}, text);
}

std::int64_t findSpeciality(jet::Database& database, const std::string& text)
{
    return find(database, {"SPOTD", "IDO", u"специальность"_s}, text);
}

void requireStudent(jet::Database& database, std::int64_t student)
{
    const std::string key = jet::sql::number(student);
    if (database.count("SELECT ID FROM SPSTUD WHERE ID = " + key + ';') == 0)
        throw notFound(u"студент"_s, key);
}

QDate dateArgument(const std::string& text)
{
    const auto date = QDate::fromString(data::fromUtf8(text), Qt::ISODate);
    if (!date.isValid() || text.size() != 10)
        throw Failure("Дата не вида ГГГГ-ММ-ДД: " + text);
    return date;
}

} // namespace cli
