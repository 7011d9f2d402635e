#include "journals/forms/journalselectors.h"

#include "journals/worded.h"
#include "shell/forms/runcommand.h"
#include "shell/names.h"
#include "shell/session.h"

#include <QComboBox>
#include <QDate>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>
#include <utility>

namespace journals {

JournalSelectors::JournalSelectors(const JournalParts& parts, const SelectorBoxes& boxes,
                                   QString allDisciplines, QString notFilled, QObject* parent)
    : QObject(parent)
    , m_parts(parts)
    , m_boxes(boxes)
    , m_allDisciplines(std::move(allDisciplines))
    , m_notFilled(std::move(notFilled))
{
    m_boxes.month->addItems(shell::monthNames());
    for (QComboBox* box : {m_boxes.group, m_boxes.subgroup, m_boxes.discipline})
        box->setPlaceholderText(worded(m_parts.session.wording(), box->placeholderText()));
}

void JournalSelectors::setMonth(int month, int year)
{
    m_boxes.month->setCurrentIndex(month >= 1 && month <= 12 ? month - 1 : -1);
    const QDate today = m_parts.session.workingDate().isValid() ? m_parts.session.workingDate()
                                                                : QDate::currentDate();
    m_boxes.year->setValue(year > 0 ? year : today.year());
}

void JournalSelectors::start()
{
    fillGroups();
    connect(m_boxes.group, &QComboBox::currentIndexChanged, this, &JournalSelectors::groupChanged);
    connect(m_boxes.subgroup, &QComboBox::currentIndexChanged, this,
            &JournalSelectors::refreshDisciplines);
    connect(m_boxes.month, &QComboBox::currentIndexChanged, this,
            &JournalSelectors::refreshDisciplines);
    connect(m_boxes.year, &QSpinBox::valueChanged, this, &JournalSelectors::refreshDisciplines);
    connect(m_boxes.discipline, &QComboBox::currentIndexChanged, this, &JournalSelectors::changed);
    connect(&m_parts.session, &shell::Session::settingsChanged, this, [this] {
        if (m_parts.session.isOpen())
            refreshDisciplines();
    });
}

void JournalSelectors::fillGroups()
{
    shell::runCommand(m_parts.prompt, m_notFilled, [this] {
        for (const auto& group : groupList(m_parts.session.database()))
            m_boxes.group->addItem(group.name, static_cast<int>(group.key));
    });
    m_boxes.group->setCurrentIndex(-1);
    m_boxes.discipline->addItem(worded(m_parts.session.wording(), m_allDisciplines));
    m_boxes.discipline->setCurrentIndex(m_fallback == Fallback::NoDiscipline ? -1 : 0);
}

void JournalSelectors::fillSubgroups()
{
    const QSignalBlocker quiet(m_boxes.subgroup);
    const int kept = std::max(0, m_boxes.subgroup->currentIndex());
    m_boxes.subgroup->clear();
    if (const auto group = chosen().group)
        for (const auto& subgroup : subgroupList(m_parts.session.database(), *group))
            m_boxes.subgroup->addItem(worded(m_parts.session.wording(), subgroup.name),
                                      subgroup.key ? QVariant(*subgroup.key) : QVariant());
    m_boxes.subgroup->setCurrentIndex(kept < m_boxes.subgroup->count() ? kept : 0);
}

// Keeps the chosen discipline as long as it is taught.
void JournalSelectors::fillDisciplines()
{
    const Disciplines disciplines = m_source();
    const QSignalBlocker quiet(m_boxes.discipline);
    const QVariant kept = m_boxes.discipline->currentData();
    const bool all = m_boxes.discipline->currentIndex() == 0;
    while (m_boxes.discipline->count() > 1)
        m_boxes.discipline->removeItem(1);
    for (const auto& discipline : disciplines)
        m_boxes.discipline->addItem(discipline.name, static_cast<int>(discipline.key));
    int fallback = m_fallback == Fallback::NoDiscipline && !all ? -1 : 0;
    if (m_fallback == Fallback::FirstDiscipline && !disciplines.empty())
        fallback = 1;
    const int index = kept.isValid() ? m_boxes.discipline->findData(kept) : -1;
    m_boxes.discipline->setCurrentIndex(index > 0 ? index : fallback);
}

void JournalSelectors::groupChanged()
{
    if (shell::runCommand(m_parts.prompt, m_notFilled, [this] { fillSubgroups(); }))
        refreshDisciplines();
}

void JournalSelectors::refreshDisciplines()
{
    if (shell::runCommand(m_parts.prompt, m_notFilled, [this] { fillDisciplines(); }))
        emit changed();
}

JournalSelectors::Chosen JournalSelectors::chosen() const
{
    Chosen chosen;
    if (m_boxes.group->currentIndex() >= 0)
        chosen.group = GroupId{m_boxes.group->currentData().toInt()};
    if (m_boxes.subgroup->currentData().isValid())
        chosen.subgroup = m_boxes.subgroup->currentData().toInt();
    chosen.allDisciplines = m_boxes.discipline->currentIndex() == 0;
    if (m_boxes.discipline->currentData().isValid())
        chosen.discipline = DisciplineId{m_boxes.discipline->currentData().toInt()};
    chosen.month = {m_boxes.year->value(), m_boxes.month->currentIndex() + 1};
    return chosen;
}

void JournalSelectors::restore(const Chosen& choice)
{
    const QSignalBlocker quietGroup(m_boxes.group), quietSubgroup(m_boxes.subgroup),
        quietDiscipline(m_boxes.discipline), quietMonth(m_boxes.month), quietYear(m_boxes.year);
    setMonth(choice.month.month, choice.month.year);
    m_boxes.group->setCurrentIndex(
        choice.group ? m_boxes.group->findData(static_cast<int>(*choice.group)) : -1);
    shell::runCommand(m_parts.prompt, m_notFilled, [&] {
        fillSubgroups();
        m_boxes.subgroup->setCurrentIndex(
            choice.subgroup ? m_boxes.subgroup->findData(*choice.subgroup) : 0);
        fillDisciplines();
    });
    if (choice.discipline)
        m_boxes.discipline->setCurrentIndex(
            m_boxes.discipline->findData(static_cast<int>(*choice.discipline)));
    else
        m_boxes.discipline->setCurrentIndex(choice.allDisciplines ? 0 : -1);
}

} // namespace journals
