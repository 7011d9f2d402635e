#include "refbooks/bookfilter.h"

#include "refbooks/worded.h"
#include "shell/settings.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

std::optional<int> keyAt(const Choices& choices, int position)
{
    return position < 0 ? std::nullopt : choices[static_cast<std::size_t>(position)].key;
}

int within(const Choices& choices, int position)
{
    return position >= 0 && position < static_cast<int>(choices.size()) ? position : -1;
}

Choices workloadKinds(const shell::Wording& wording)
{
    return {{static_cast<int>(WorkloadKind::ByTeacher), worded(wording, u"По преподавателю"_s)},
            {static_cast<int>(WorkloadKind::ByGroup), worded(wording, u"По группе"_s)},
            {static_cast<int>(WorkloadKind::ByRoom), worded(wording, u"По аудитории"_s)}};
}

} // namespace

BookFilter::BookFilter(Book book, const shell::Wording& wording)
    : m_book(book)
    , m_wording(wording)
{
    if (m_book == Book::Workload) {
        m_first = workloadKinds(m_wording);
        m_firstPosition = 0;
    } else if (m_book == Book::Students) {
        m_secondPosition = 0;
    }
}

Choices BookFilter::secondChoices(jet::Database& database) const
{
    if (m_book == Book::Workload) {
        static constexpr Lookup kLists[] = {Lookup::Teachers, Lookup::Groups, Lookup::Rooms};
        return choices(kLists[static_cast<int>(kind())], database, m_wording);
    }
    Choices subgroups = choices(Lookup::Subgroups, database, m_wording);
    subgroups.insert(subgroups.begin(), {std::nullopt, worded(m_wording, u"Все подгруппы"_s)});
    return subgroups;
}

void BookFilter::fill(jet::Database& database)
{
    if (!isShown())
        return;
    if (m_book == Book::Students) {
        const auto group = keyAt(m_first, m_firstPosition);
        m_first = choices(Lookup::Groups, database, m_wording);
        m_firstPosition = group ? positionOf(m_first, group) : -1;
    }
    const bool hadChoice = m_secondPosition >= 0 && !m_second.empty();
    const auto key = hadChoice ? keyAt(m_second, m_secondPosition) : std::nullopt;
    m_second = secondChoices(database);
    // The workload's list has no row for nobody; without their subgroup students are all shown.
    m_secondPosition = positionOf(m_second, key);
    if (m_book == Book::Students)
        m_secondPosition = std::max(m_secondPosition, 0);
}

void BookFilter::chooseFirst(int position, jet::Database& database)
{
    const int chosen = within(m_first, position);
    if (m_book == Book::Workload) {
        if (chosen < 0 || chosen == m_firstPosition)
            return;
        m_secondPosition = -1;
        m_firstPosition = chosen;
        m_second = secondChoices(database);
    }
    m_firstPosition = chosen;
}

void BookFilter::chooseSecond(int position)
{
    m_secondPosition = within(m_second, position);
}

ListFilter BookFilter::listFilter() const
{
    if (m_book == Book::Workload)
        return {kind(), keyAt(m_second, m_secondPosition), {}};
    if (m_book == Book::Students)
        return {{}, keyAt(m_first, m_firstPosition), keyAt(m_second, m_secondPosition)};
    return {};
}

QString BookFilter::caption() const
{
    if (m_book != Book::Workload)
        return bookTitle(m_book, m_wording);
    static const QString kWhose[] = {u"преподавателя"_s, u"группы"_s, u"аудитории"_s};
    return worded(m_wording, bookInfo(m_book).title + u' ' + kWhose[static_cast<int>(kind())]);
}

void BookFilter::restore(const shell::Settings& settings, jet::Database& database)
{
    using shell::Setting;
    if (m_book == Book::Workload)
        m_firstPosition = std::max(within(m_first, settings.number(Setting::WorkloadFilter)), 0);
    m_secondPosition = -1;
    m_second.clear();
    fill(database);
    if (m_book == Book::Workload)
        m_secondPosition = within(m_second, settings.number(Setting::WorkloadListItem));
    else if (m_book == Book::Students)
        m_firstPosition = within(m_first, settings.number(Setting::StudentsListItem));
}

void BookFilter::save(shell::Settings& settings) const
{
    using shell::Setting;
    if (m_book == Book::Workload) {
        settings.setNumber(Setting::WorkloadFilter, m_firstPosition);
        settings.setNumber(Setting::WorkloadListItem, m_secondPosition);
    } else if (m_book == Book::Students) {
        settings.setNumber(Setting::StudentsListItem, m_firstPosition);
    }
}

} // namespace refbooks
