#include "refbooks/deletion.h"

#include "data/convert.h"
#include "jet/database.h"
#include "jet/sqltext.h"
#include "refbooks/deletionrules.h"
#include "refbooks/permission.h"
#include "refbooks/workloadlinks.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/statusline.h"

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace refbooks {
namespace {

constexpr Phrase kOnlyAdministrators{u"Невозможно удалить пользователя без прав Администратора."};
constexpr Phrase kOwnAccount{u"Пользователь не может удалить свою учетную запись (под которой он "
                             u"вошел в программу)."};
constexpr Phrase kLastAdministrator{
    u"Нельзя удалить этого пользователя, так как после удаления в справочнике не останется ни "
    u"одного пользователя с правами Администратора."};

// The study forms that reports to the authorities name by their keys.
constexpr std::int64_t kFixedStudyForms = 4;
constexpr Phrase kFixedStudyForm{
    u"Первые 4 вида обучения нельзя удалять из справочника, так как будет нарушена возможность "
    u"экспорта данных в программы государственной отчетности."};

constexpr Phrase kStudentInJournals{
    u"У %1 заполнен Журнал посещаемости и/или Журнал успеваемости. Удалить студента вместе с "
    u"посещаемостью и успеваемостью по всем дисциплинам без возможности восстановления?",
    u"У %1 заполнен Журнал посещаемости и/или Журнал успеваемости. Удалить учащегося вместе с "
    u"посещаемостью и успеваемостью по всем предметам без возможности восстановления?"};

bool inUse(jet::Database& database, const UseCheck& use, std::int64_t key)
{
    const std::string table(use.table), counted(use.counted), field(use.field);
    auto rows = database.query("SELECT Count(" + table + "." + counted + ") AS [Count-" + counted
                               + "] From " + table + " WHERE (((" + table + "." + field
                               + ")=" + sql::number(key) + "));");
    return rows.next() && rows.integer(0) > 0;
}

// The statement that takes the row out of its book.
std::string deletionOf(const DeletionRule& rule, std::int64_t key)
{
    const BookInfo& book = bookInfo(rule.book);
    const std::string table(book.table);
    return "DELETE " + table + ".* From " + table + " WHERE (((" + table + "."
           + std::string(book.key) + ")=" + sql::number(key) + "));";
}

std::int64_t linkOf(jet::Database& database, std::int64_t workload)
{
    auto rows = database.query(
        "SELECT SPNAGR.IDNN FROM SPNAGR WHERE ((SPNAGR.IDN)=" + sql::number(workload) + ");");
    return rows.next() ? rows.integer(0) : 0;
}

} // namespace

Deletion::Deletion(shell::Session& session, shell::Prompt& prompt, shell::StatusLine& status)
    : m_session(session)
    , m_prompt(prompt)
    , m_status(status)
{}

jet::Database& Deletion::database()
{
    return m_session.database();
}

int Deletion::deleteSelected(Book book, std::span<const std::int64_t> keys)
{
    const DeletionRule* rule = deletionRule(book);
    if (rule == nullptr || keys.empty())
        return 0;
    if (book != Book::Users && !mayChangeBooks(m_session, m_prompt))
        return 0;
    const QString ending = keys.size() == 1 ? u"ую строку?"_s : u"ые строки?"_s;
    if (!m_prompt.confirm(u"Удалить выделенн"_s + ending))
        return 0;

    m_deleted = 0;
    const auto showCount = [this] {
        m_status.show(u"Удалено строк: "_s + QString::number(m_deleted));
    };
    m_status.show(u"Идет удаление строк..."_s);
    try {
        deleteRows(*rule, keys);
    } catch (...) {
        showCount();
        throw;
    }
    showCount();
    return m_deleted;
}

void Deletion::deleteRows(const DeletionRule& rule, std::span<const std::int64_t> keys)
{
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (const auto text = refusal(rule, keys[i])) {
            if (i + 1 == keys.size()) {
                m_prompt.exclamation(*text);
            } else if (!m_prompt.confirm(*text + u"\n\nУдалить остальные выделенные строки?"_s)) {
                return;
            }
        } else if (deleteRow(rule, keys[i])) {
            ++m_deleted;
            m_status.show(u"Строка удалена."_s);
        }
    }
}

std::optional<QString> Deletion::refusal(const DeletionRule& rule, std::int64_t key)
{
    if (auto text = specialRefusal(rule, key))
        return text;
    for (const UseCheck& use : rule.uses) {
        if (inUse(database(), use, key))
            return named(rule, key, use.refusal);
    }
    return std::nullopt;
}

std::optional<QString> Deletion::specialRefusal(const DeletionRule& rule, std::int64_t key)
{
    if (rule.book == Book::Users)
        return userRefusal(key);
    if (rule.book == Book::StudyForms && key <= kFixedStudyForms)
        return kFixedStudyForm.in(m_session.wording());
    if (rule.book == Book::Workload && lessonsOfLink(key))
        return named(rule, key, rule.uses.front().refusal);
    return std::nullopt;
}

std::optional<QString> Deletion::userRefusal(std::int64_t key)
{
    const shell::Wording& wording = m_session.wording();
    if (!m_session.mayEditUsers())
        return kOnlyAdministrators.in(wording);
    if (key == m_session.user().id)
        return kOwnAccount.in(wording);
    const bool othersRemain =
        database().count("SELECT * FROM USERS WHERE ((USERS.ROLE)=0) AND ((USERS.IDU)<>"
                         + sql::number(key) + ");")
        > 0;
    return othersRemain ? std::nullopt : std::optional(kLastAdministrator.in(wording));
}

bool Deletion::lessonsOfLink(std::int64_t workload)
{
    constexpr UseCheck kByLink{"UROKI", "ID", "IDNN", {}};
    const std::int64_t link = linkOf(database(), workload);
    return link > 0 && inUse(database(), kByLink, link);
}

bool Deletion::deleteRow(const DeletionRule& rule, std::int64_t key)
{
    switch (rule.book) {
    case Book::Workload:
        return deleteWorkload(rule, key);
    case Book::Students:
        return deleteStudent(rule, key);
    default:
        return database().execute(deletionOf(rule, key)) > 0;
    }
}

bool Deletion::deleteWorkload(const DeletionRule& rule, std::int64_t key)
{
    const std::int64_t link = linkOf(database(), key);
    jet::Transaction transaction(database());
    const bool gone = database().execute(deletionOf(rule, key)) > 0;
    if (link > 0)
        releaseLastRow(database(), link);
    transaction.commit();
    return gone;
}

// The student's key is looked for in IDD of the lessons and the grades, and what is found there
// goes with him. Rows that hold the key in other fields stay as they are.
bool Deletion::deleteStudent(const DeletionRule& rule, std::int64_t key)
{
    const std::string number = sql::number(key);
    const bool inJournals =
        database().count("SELECT * From UROKI WHERE ((UROKI.IDd)=" + number + ");") > 0
        || database().count("SELECT * From usp WHERE ((usp.IDd)=" + number + ");") > 0;
    if (inJournals && !m_prompt.confirm(named(rule, key, kStudentInJournals)))
        return false;
    jet::Transaction transaction(database());
    if (inJournals) {
        database().execute("DELETE uroki.* From uroki WHERE (((uroki.IDd)=" + number + "));");
        database().execute("DELETE usp.* From usp WHERE (((usp.IDd)=" + number + "));");
    }
    const bool gone = database().execute(deletionOf(rule, key)) > 0;
    transaction.commit();
    return gone;
}

QString Deletion::named(const DeletionRule& rule, std::int64_t key, const Phrase& phrase)
{
    const BookInfo& book = bookInfo(rule.book);
    auto rows = database().query(std::string(rule.names) + " WHERE " + std::string(book.table) + "."
                                 + std::string(book.key) + " = " + sql::number(key) + ";");
    const bool found = rows.next();
    const auto name = [&](int column) {
        return found ? data::fromUtf8(rows.text(column)).trimmed() : QString();
    };
    const QString text = phrase.in(m_session.wording());
    switch (rows.columns().size()) {
    case 1:
        return text.arg(name(0));
    case 2:
        return text.arg(name(0), name(1));
    default:
        return text.arg(name(0), name(1), name(2));
    }
}

} // namespace refbooks
