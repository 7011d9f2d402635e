#include "refbooks/workloadcopy.h"

#include "jet/database.h"
#include "jet/sqltext.h"
#include "refbooks/lookups.h"
#include "refbooks/permission.h"
#include "refbooks/phrase.h"
#include "refbooks/workloadlinks.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/statusline.h"

#include <QStringList>

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;
namespace sql = jet::sql;

namespace refbooks {
namespace {

constexpr Phrase kChooseGroups{
    u"Выберите учебные группы для копирования в них выбранной нагрузки."};
constexpr Phrase kChooseSubgroups{u"Выберите подгруппы для копирования в них выбранной нагрузки.",
                                  u"Выберите подгруппы для копирования в них выбранной нагрузки."};
constexpr Phrase kGroups{u"учебные группы"};
constexpr Phrase kSubgroups{u"подгруппы", u"подгруппы"}; // a class has subgroups too

using Values = std::vector<std::pair<std::string, jet::Value>>;

bool sameName(std::string_view left, std::string_view right)
{
    return std::ranges::equal(left, right, [](unsigned char a, unsigned char b) {
        return std::toupper(a) == std::toupper(b);
    });
}

// A workload row without its key, its link and the field that the copy fills anew.
struct Source
{
    std::int64_t link = 0;
    Values values;
};

// Nothing in `values` when there is no such row.
Source readSource(jet::Database& database, std::int64_t key, std::string_view replaced)
{
    auto row = database.query("SELECT * FROM SPNAGR WHERE SPNAGR.IDN=" + sql::number(key) + ";");
    if (!row.next())
        return {};
    Source source{.link = row.integer("IDNN"), .values = {}};
    for (int i = 0; std::cmp_less(i, row.columns().size()); ++i) {
        const std::string& name = row.columns()[static_cast<std::size_t>(i)].name;
        if (!sameName(name, "IDN") && !sameName(name, "IDNN") && !sameName(name, replaced))
            source.values.emplace_back(name, row.value(i));
    }
    return source;
}

std::vector<CopyTarget> allGroups(jet::Database& database, const shell::Wording& wording)
{
    std::vector<CopyTarget> groups;
    for (const Choice& group : choices(Lookup::Groups, database, wording))
        groups.push_back({*group.key, group.text});
    return groups;
}

// The highest subgroup number among the students of the row's group.
std::int64_t highestSubgroup(jet::Database& database, std::int64_t workload)
{
    auto rows = database.query("SELECT max(SPSTUD.IDGG) FROM SPNAGR INNER JOIN SPSTUD "
                               "ON SPNAGR.IDG = SPSTUD.IDG WHERE SPNAGR.IDN = "
                               + sql::number(workload) + ";");
    return rows.next() ? rows.integer(0) : 0;
}

// Makes the row the head of a new link with its copies. Where rows of a link that it has left
// still carry its key as their number, the first copy is the head instead.
void linkCopies(jet::Database& database, std::int64_t source,
                const std::vector<std::int64_t>& copies)
{
    const std::int64_t link = linkSize(database, source) == 0 ? source : copies.front();
    std::string rows = sql::number(source);
    for (const std::int64_t copy : copies)
        rows += ", " + sql::number(copy);
    database.execute("UPDATE SPNAGR SET SPNAGR.IDNN = " + sql::number(link)
                     + " WHERE SPNAGR.IDN IN (" + rows + ");");
}

} // namespace

QString copyChoicePrompt(CopyTo to, const shell::Wording& wording)
{
    return (to == CopyTo::Groups ? kChooseGroups : kChooseSubgroups).in(wording);
}

QString copyConfirmPrompt()
{
    return u"Нажмите \"Да\" для копирования или \"Нет\" для отмены."_s;
}

WorkloadCopy::WorkloadCopy(shell::Session& session, shell::Prompt& prompt,
                           shell::StatusLine& status)
    : m_session(session)
    , m_prompt(prompt)
    , m_status(status)
{}

jet::Database& WorkloadCopy::database()
{
    return m_session.database();
}

std::vector<CopyTarget> WorkloadCopy::targets(CopyTo to, std::span<const std::int64_t> keys)
{
    if (to == CopyTo::Groups)
        return allGroups(database(), m_session.wording());
    std::int64_t highest = 0;
    for (const std::int64_t key : keys)
        highest = std::max(highest, highestSubgroup(database(), key));
    std::vector<CopyTarget> subgroups;
    for (const Choice& subgroup : numberedSubgroups(highest))
        subgroups.push_back({*subgroup.key, subgroup.text});
    return subgroups;
}

int WorkloadCopy::copy(std::span<const std::int64_t> keys, CopyTo to,
                       std::span<const CopyTarget> targets)
{
    if (keys.empty() || targets.empty() || !mayChangeBooks(m_session, m_prompt))
        return 0;
    if (!m_prompt.confirm(question(to, targets))) {
        m_status.show(u"Строки не были скопированы."_s);
        m_status.show(u"Готово"_s);
        return 0;
    }
    m_status.show(u"Идет копирование строк..."_s);
    int created = 0;
    for (const std::int64_t key : keys)
        created += copyRow(key, to, targets);
    m_prompt.information(u"Создано строк: "_s + QString::number(created) + u'.');
    m_status.show(u"Готово"_s);
    return created;
}

QString WorkloadCopy::question(CopyTo to, std::span<const CopyTarget> targets) const
{
    QStringList names;
    for (const CopyTarget& target : targets)
        names << target.name;
    const Phrase& kind = to == CopyTo::Groups ? kGroups : kSubgroups;
    return u"Сейчас произойдет копирование выделенных Вами строк нагрузки на "_s
           + kind.in(m_session.wording()) + u": "_s + names.join(u", "_s)
           + u". После нажатия \"Да\" это будет невозможно отменить. Копировать?"_s;
}

int WorkloadCopy::copyRow(std::int64_t key, CopyTo to, std::span<const CopyTarget> targets)
{
    const std::string replaced = to == CopyTo::Groups ? "IDG" : "IDGG";
    Source source = readSource(database(), key, replaced);
    if (source.values.empty())
        return 0;
    jet::Transaction transaction(database());
    if (to == CopyTo::Subgroups && source.link > 0)
        source.values.emplace_back("IDNN", source.link);
    source.values.emplace_back(replaced, jet::Value());
    std::vector<std::int64_t> copies;
    for (const CopyTarget& target : targets) {
        source.values.back().second = target.key;
        copies.push_back(database().insert("SPNAGR", source.values));
    }
    if (to == CopyTo::Subgroups && source.link < 1)
        linkCopies(database(), key, copies);
    transaction.commit();
    return static_cast<int>(copies.size());
}

} // namespace refbooks
