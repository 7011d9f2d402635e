#include "shell/forms/frmcalend.h"

#include "ui_frmcalend.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QEvent>
#include <QTextCharFormat>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr int kDaysShown = 42; // six weeks

// Red that is readable on the ground of the palette, light or dark.
QColor freeDayColor(const QPalette& palette)
{
    return palette.color(QPalette::Base).lightness() > 127 ? QColor(0xb3261e) : QColor(0xff8a80);
}

QColor yearGround(const QPalette& palette)
{
    const QColor base = palette.color(QPalette::Base);
    return base.lightness() > 127 ? QColor(0xe4f0e4) : QColor(0x22382a);
}

// Qt names the parts of the calendar's head for nobody but itself.
void nameParts(QCalendarWidget& calendar)
{
    const std::pair<QString, QString> names[] = {
        {u"qt_calendar_prevmonth"_s, u"Предыдущий месяц"_s},
        {u"qt_calendar_nextmonth"_s, u"Следующий месяц"_s},
        {u"qt_calendar_monthbutton"_s, u"Месяц"_s},
        {u"qt_calendar_yearbutton"_s, u"Год"_s},
        {u"qt_calendar_yearedit"_s, u"Год"_s},
        {u"qt_calendar_calendarview"_s, u"Дни месяца"_s},
    };
    for (const auto& [object, name] : names) {
        if (auto* part = calendar.findChild<QWidget*>(object)) {
            part->setAccessibleName(name);
            part->setToolTip(part->inherits("QToolButton") ? name : QString());
        }
    }
}

} // namespace

frmCalend::frmCalend(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmCalend>())
{
    ui->setupUi(this);
    nameParts(*ui->calendar);
    addShortcuts();
    connect(ui->calendar, &QCalendarWidget::currentPageChanged, this, &frmCalend::paintMonth);
    connect(ui->calendar, &QCalendarWidget::selectionChanged, this, &frmCalend::describe);
    connect(ui->cmdToday, &QPushButton::clicked, this, [this] { showDate(QDate::currentDate()); });
    connect(ui->cmdClose, &QPushButton::clicked, this, &frmCalend::close);
    connect(ui->lstHolidays, &QListWidget::itemActivated, this,
            [this](const QListWidgetItem* item) { showDate(item->data(Qt::UserRole).toDate()); });
    ui->calendar->setFocus();
    setDays({});
}

frmCalend::~frmCalend() = default;

void frmCalend::setDays(const StudyCalendar& days)
{
    m_days = days;
    ui->lblYear->setText(days.studyYearText()
                         + (days.hasStudyYear() ? u" Дни учебного года выделены фоном."_s : u""_s));
    paintMonth();
    describe();
}

void frmCalend::showDate(QDate day)
{
    ui->calendar->setSelectedDate(day);
    ui->calendar->setFocus();
}

void frmCalend::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange && ui->calendar) {
        paintMonth();
    }
    QDialog::changeEvent(event);
}

// Beside the calendar's own keys: arrows, Home, End, Page Up and Page Down for the month.
void frmCalend::addShortcuts()
{
    const auto add = [this](const QKeySequence& keys, const QString& text, int months) {
        auto* action = new QAction(text, this);
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this,
                [this, months] { showDate(ui->calendar->selectedDate().addMonths(months)); });
        addAction(action);
    };
    add(Qt::CTRL | Qt::Key_PageUp, u"Предыдущий год"_s, -12);
    add(Qt::CTRL | Qt::Key_PageDown, u"Следующий год"_s, 12);
}

void frmCalend::describe()
{
    ui->lblDay->setText(m_days.describe(ui->calendar->selectedDate()));
}

// Every day in sight gets its look anew: holidays return each year, so that no table of dates
// could hold them all.
void frmCalend::paintMonth()
{
    ui->calendar->setDateTextFormat({}, {});
    QTextCharFormat sunday;
    sunday.setForeground(freeDayColor(palette()));
    ui->calendar->setWeekdayTextFormat(Qt::Saturday, {});
    ui->calendar->setWeekdayTextFormat(Qt::Sunday, sunday);
    const QDate first(ui->calendar->yearShown(), ui->calendar->monthShown(), 1);
    const QDate start = first.addDays(-7); // the head of the page may be the month before
    for (int i = 0; i < kDaysShown + 7; ++i) {
        const QDate day = start.addDays(i);
        QTextCharFormat format;
        if (m_days.inStudyYear(day)) {
            format.setBackground(yearGround(palette()));
        }
        if (const QStringList names = m_days.holidays(day); !names.isEmpty()) {
            format.setForeground(freeDayColor(palette()));
            format.setFontWeight(QFont::Bold);
            format.setFontUnderline(true);
            format.setToolTip(names.join(u'\n'));
        }
        if (format.propertyCount() > 0) {
            ui->calendar->setDateTextFormat(day, format);
        }
    }
    fillHolidayList();
}

void frmCalend::fillHolidayList()
{
    ui->lstHolidays->clear();
    const auto days = m_days.holidaysOfMonth(ui->calendar->yearShown(), ui->calendar->monthShown());
    for (const auto& [day, names] : days) {
        auto* item = new QListWidgetItem(u"%1 – %2"_s.arg(day.toString(u"dd.MM.yyyy"_s), names),
                                         ui->lstHolidays);
        item->setData(Qt::UserRole, day);
    }
    if (days.empty()) {
        auto* none = new QListWidgetItem(u"В этом месяце праздников нет"_s, ui->lstHolidays);
        none->setFlags(Qt::NoItemFlags);
    }
}

} // namespace shell
