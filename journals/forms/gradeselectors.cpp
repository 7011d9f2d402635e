#include "journals/forms/gradeselectors.h"

#include "shell/session.h"
#include "shell/settings.h"

#include <QComboBox>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;
using shell::Setting;

namespace journals {

GradeSelectors::GradeSelectors(const JournalParts& parts, const Boxes& boxes,
                               const QString& notFilled, Source disciplines, QObject* parent)
    : QObject(parent)
    , m_parts(parts)
    , m_boxes(boxes)
    , m_common(new JournalSelectors(parts, boxes.common, u"ВСЕ ПРЕДМЕТЫ"_s, notFilled, this))
{
    m_common->setDisciplineSource(
        [this, source = std::move(disciplines)] { return source(chosen()); });
    m_common->setFallback(JournalSelectors::Fallback::NoDiscipline);
    fillPeriods();
}

void GradeSelectors::start()
{
    const shell::Settings& settings = m_parts.settings;
    m_common->setMonth(settings.number(Setting::GradeMonth), settings.number(Setting::GradeYear));
    const int mode = settings.number(Setting::GradeMode);
    m_boxes.mode->setCurrentIndex(mode >= 0 && mode < m_boxes.mode->count() ? mode : 0);
    m_boxes.period->setCurrentIndex(
        std::max(0, m_boxes.period->findText(settings.text(Setting::GradePeriod))));

    connect(&m_parts.session, &shell::Session::settingsChanged, this, &GradeSelectors::fillPeriods);
    m_common->start();
    connect(m_common, &JournalSelectors::changed, this, &GradeSelectors::changed);
    connect(m_boxes.mode, &QComboBox::currentIndexChanged, this, &GradeSelectors::modeChanged);
    connect(m_boxes.period, &QComboBox::currentIndexChanged, this, &GradeSelectors::modeChanged);
    showNeeded();
    const int group = settings.number(Setting::GradeGroup);
    if (group != 0)
        m_boxes.common.group->setCurrentIndex(m_boxes.common.group->findData(group));
}

void GradeSelectors::save()
{
    shell::Settings& settings = m_parts.settings;
    settings.setNumber(Setting::GradeMonth, m_boxes.common.month->currentIndex() + 1);
    settings.setNumber(Setting::GradeYear, m_boxes.common.year->value());
    settings.setNumber(Setting::GradeMode, m_boxes.mode->currentIndex());
    settings.setNumber(Setting::GradeGroup, m_boxes.common.group->currentData().toInt());
    settings.setText(Setting::GradePeriod, m_boxes.period->currentText());
}

void GradeSelectors::fillPeriods()
{
    const QSignalBlocker quiet(m_boxes.period);
    const int kept = std::max(0, m_boxes.period->currentIndex());
    m_years = studyYears(studyPeriod(m_parts.session.settings()));
    m_boxes.period->clear();
    for (const StudyYear& year : m_years)
        m_boxes.period->addItem(year.label);
    m_boxes.period->setCurrentIndex(kept);
}

GradeSelection GradeSelectors::chosen() const
{
    const JournalSelectors::Chosen common = m_common->chosen();
    const auto year = static_cast<std::size_t>(std::max(0, m_boxes.period->currentIndex()));
    return {common.group,
            common.subgroup,
            common.allDisciplines,
            common.discipline,
            common.month,
            m_years.at(year).days,
            static_cast<GradeMode>(m_boxes.mode->currentIndex())};
}

GradeSelection GradeSelectors::selection()
{
    const GradeSelection now = chosen();
    if (now.allDisciplines && now.mode == GradeMode::Current) {
        setMode(GradeMode::Monthly);
        m_currentLater = true;
    } else if (now.discipline && m_currentLater) {
        setMode(GradeMode::Current);
        m_currentLater = false;
    }
    showNeeded();
    return chosen();
}

void GradeSelectors::restore(const GradeSelection& selection)
{
    const QSignalBlocker quiet(m_boxes.period);
    setMode(selection.mode);
    const auto year = std::find_if(m_years.begin(), m_years.end(), [&](const StudyYear& each) {
        return each.days == selection.year;
    });
    if (year != m_years.end())
        m_boxes.period->setCurrentIndex(static_cast<int>(year - m_years.begin()));
    m_common->restore({selection.group, selection.subgroup, selection.allDisciplines,
                       selection.discipline, selection.month});
    showNeeded();
}

void GradeSelectors::modeChanged()
{
    m_currentLater = false;
    showNeeded();
    m_common->refreshDisciplines();
}

void GradeSelectors::setMode(GradeMode mode)
{
    const QSignalBlocker quiet(m_boxes.mode);
    m_boxes.mode->setCurrentIndex(static_cast<int>(mode));
}

void GradeSelectors::showNeeded()
{
    const bool month = chosen().byMonth();
    for (QWidget* widget : m_boxes.monthOnly)
        widget->setVisible(month);
    for (QWidget* widget : m_boxes.periodOnly)
        widget->setVisible(!month);
}

} // namespace journals
