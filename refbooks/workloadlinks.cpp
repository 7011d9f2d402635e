#include "refbooks/workloadlinks.h"

#include "jet/database.h"
#include "jet/sqltext.h"
#include "refbooks/permission.h"
#include "refbooks/phrase.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/statusline.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace refbooks {
namespace {

constexpr Phrase kNothingToDo{
    u"Выделите строки, которые необходимо связать, либо одну или несколько ранее связанных "
    u"строк, которые нужно рассоединить."};
constexpr Phrase kHaveLessons{
    u"По выделенным нагрузкам имеются назначенные занятия (см. Журнал занятий). %1 нагрузок "
    u"может привести к нежелательным последствиям, например, к неправильному подсчету "
    u"количества выполненных часов. Рекомендуется в справочнике нагрузки создать дополнительные "
    u"аналогичные нагрузки с другими параметрами связывания. Продолжить?",
    u"По выделенным нагрузкам имеются назначенные уроки (см. Журнал уроков). %1 нагрузок может "
    u"привести к нежелательным последствиям, например, к неправильному подсчету количества "
    u"выполненных часов. Рекомендуется в справочнике нагрузки создать дополнительные "
    u"аналогичные нагрузки с другими параметрами связывания. Продолжить?"};
constexpr Phrase kParametersDiffer{
    u"Связывание не выполнено, так как связываемые нагрузки должны иметь одинаковые параметры "
    u"(количество часов, период выполнения и др.), за исключением параметров: преподаватель, "
    u"группа, подгруппа, дисциплина. Занятия всех связанных нагрузок проводятся в одной "
    u"аудитории в одно и то же время.",
    u"Связывание не выполнено, так как связываемые нагрузки должны иметь одинаковые параметры "
    u"(количество часов, период выполнения и др.), за исключением параметров: учитель, класс, "
    u"подгруппа, предмет. Уроки всех связанных нагрузок проводятся в одной аудитории в одно и "
    u"то же время."};

// What rows of one link share. An empty room is the same as none, an empty date as no date.
struct Parameters
{
    std::int64_t roomType = 0;
    std::int64_t room = 0;
    double hours = 0;
    jet::DateTime begin;
    jet::DateTime end;
    std::array<bool, 4> flags{}; // NO_CALC, PO_ZAM, PRAKT, WITHD
    friend bool operator==(const Parameters&, const Parameters&) = default;
};

Parameters readParameters(jet::Database& database, std::int64_t key)
{
    auto row =
        database.query("SELECT * FROM SPNAGR WHERE ((SPNAGR.IDN)=" + sql::number(key) + ");");
    if (!row.next())
        return {};
    return {.roomType = row.integer("idt"),
            .room = row.integer("ida"),
            .hours = row.number("chsem"),
            .begin = row.date("DATNN"),
            .end = row.date("DATKK"),
            .flags = {row["NO_CALC"].toBool(), row["PO_ZAM"].toBool(), row["PRAKT"].toBool(),
                      row["WITHD"].toBool()}};
}

std::string inLink(std::int64_t link)
{
    return " WHERE (((SPNAGR.IDNN)=" + sql::number(link) + "));";
}

std::string ofRow(std::int64_t key)
{
    return " WHERE (((SPNAGR.IDN)=" + sql::number(key) + "));";
}

std::string setLink(std::int64_t link)
{
    return "UPDATE SPNAGR SET SPNAGR.IDNN = " + sql::number(link);
}

} // namespace

std::int64_t linkSize(jet::Database& database, std::int64_t link)
{
    return database.count("SELECT SPNAGR.IDN From SPNAGR" + inLink(link));
}

bool releaseLastRow(jet::Database& database, std::int64_t link)
{
    if (linkSize(database, link) != 1)
        return false;
    database.execute(setLink(0) + inLink(link));
    return true;
}

WorkloadLinks::WorkloadLinks(shell::Session& session, shell::Prompt& prompt,
                             shell::StatusLine& status)
    : m_session(session)
    , m_prompt(prompt)
    , m_status(status)
{}

jet::Database& WorkloadLinks::database()
{
    return m_session.database();
}

bool WorkloadLinks::linkOrUnlink(std::span<const std::int64_t> keys)
{
    if (!mayChangeBooks(m_session, m_prompt))
        return false;
    const Selection selection = readSelection(keys);
    if (selection.rows.empty() || (selection.rows.size() == 1 && selection.linked == 0)) {
        m_prompt.exclamation(kNothingToDo.in(m_session.wording()));
        return false;
    }
    const bool oneLink = selection.linked == selection.rows.size() && !selection.severalLinks;
    return oneLink ? unlink(selection) : link(selection);
}

WorkloadLinks::Selection WorkloadLinks::readSelection(std::span<const std::int64_t> keys)
{
    Selection selection;
    for (const std::int64_t key : keys) {
        auto row = database().query("SELECT SPNAGR.IDNN From SPNAGR" + ofRow(key));
        if (!row.next())
            continue;
        const std::int64_t link = std::max<std::int64_t>(row.integer(0), 0);
        selection.rows.push_back({key, link});
        if (link == 0)
            continue;
        ++selection.linked;
        if (selection.link == 0)
            selection.link = link;
        selection.severalLinks = selection.severalLinks || link != selection.link;
    }
    return selection;
}

bool WorkloadLinks::unlink(const Selection& selection)
{
    if (!m_prompt.question(unlinkQuestion(selection), shell::Answer::No)
        || !goOnWithLessons(selection, false))
        return cancelled();
    std::int64_t released = 0;
    if (selection.rows.size() == 1) {
        jet::Transaction transaction(database()); // no moment with a link of a single row
        released = database().execute(setLink(0) + ofRow(selection.rows.front().key));
        released += releaseLastRow(database(), selection.link) ? 1 : 0;
        transaction.commit();
    } else {
        released = database().execute(setLink(0) + inLink(selection.link));
    }
    m_status.show(u"Рассоединено нагрузок: "_s + QString::number(released));
    return true;
}

QString WorkloadLinks::unlinkQuestion(const Selection& selection)
{
    if (selection.rows.size() == 1)
        return u"Отсоединить нагрузку от связанных нагрузок?"_s;
    const bool part =
        linkSize(database(), selection.link) > static_cast<std::int64_t>(selection.rows.size());
    return (part ? u"Отсоединить"_s : u"Рассоединить"_s) + u" связанные нагрузки?"_s;
}

bool WorkloadLinks::link(const Selection& selection)
{
    if (!m_prompt.question(u"Связать выделенные нагрузки?"_s, shell::Answer::No))
        return cancelled();
    if (selection.severalLinks
        && !m_prompt.confirm(
            u"Выделено несколько связанных в разные связи нагрузок. Связать воедино?"_s))
        return cancelled();
    if (!goOnWithLessons(selection, true))
        return cancelled();
    if (!sameParameters(selection)) {
        m_prompt.exclamation(kParametersDiffer.in(m_session.wording()));
        return false;
    }

    const std::int64_t link = selection.link != 0 ? selection.link : freeLinkNumber(selection);
    for (const Row& row : selection.rows) {
        if (row.link == 0)
            database().execute(setLink(link) + ofRow(row.key));
        else if (row.link != link) // the whole other link comes over
            database().execute(setLink(link) + inLink(row.link));
    }
    m_status.show(u"Связано нагрузок: "_s + QString::number(linkSize(database(), link)));
    return true;
}

bool WorkloadLinks::goOnWithLessons(const Selection& selection, bool linking)
{
    const bool lessons = std::ranges::any_of(selection.rows, [this](const Row& row) {
        return database().count("SELECT UROKI.IDN From UROKI WHERE (((UROKI.IDN)="
                                + sql::number(row.key) + "));")
               > 0;
    });
    if (!lessons)
        return true;
    const QString work = linking ? u"Связывание"_s : u"Рассоединение"_s;
    return m_prompt.question(kHaveLessons.in(m_session.wording()).arg(work), shell::Answer::No);
}

bool WorkloadLinks::sameParameters(const Selection& selection)
{
    const Parameters first = readParameters(database(), selection.rows.front().key);
    return std::ranges::all_of(selection.rows, [&](const Row& row) {
        return readParameters(database(), row.key) == first;
    });
}

// The first row's key. Where rows of a link that it has left still carry it, another row's, as
// linking would take them back in.
std::int64_t WorkloadLinks::freeLinkNumber(const Selection& selection)
{
    const auto isFree = [this](const Row& row) { return linkSize(database(), row.key) == 0; };
    const auto found = std::ranges::find_if(selection.rows, isFree);
    return found != selection.rows.end() ? found->key : selection.rows.front().key;
}

bool WorkloadLinks::cancelled()
{
    m_status.show(u"Операция отменена."_s);
    return false;
}

} // namespace refbooks
