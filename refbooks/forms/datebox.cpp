#include "refbooks/forms/datebox.h"

#include "refbooks/typedvalue.h"
#include "shell/forms/paletteicon.h"

#include <QAction>
#include <QCalendarWidget>
#include <QKeyEvent>
#include <QMenu>
#include <QWidgetAction>

using namespace Qt::StringLiterals;

// The resources stand in a static library, whose initialisers nothing else would pull in.
// The macro must stand outside a namespace.
static void initRecordIcons()
{
    Q_INIT_RESOURCE(recordicons);
}

namespace refbooks {

DateBox::DateBox(QDate today, QWidget* parent)
    : QLineEdit(parent)
    , m_today(today.isValid() ? today : QDate::currentDate())
{
    initRecordIcons();
    setPlaceholderText(u"дд.мм.гггг"_s);
    auto* calendar = addAction(shell::paletteIcon(u"calendar"_s), QLineEdit::TrailingPosition);
    calendar->setText(u"Календарь"_s);
    calendar->setToolTip(u"Календарь (Alt+↓)"_s);
    connect(calendar, &QAction::triggered, this, &DateBox::openCalendar);
}

void DateBox::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Down && event->modifiers().testFlag(Qt::AltModifier))
        openCalendar();
    else
        QLineEdit::keyPressEvent(event);
}

void DateBox::openCalendar()
{
    const QDate present = typedDate(text()).value_or(QDate());
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto* calendar = new QCalendarWidget;
    calendar->setAccessibleName(u"Календарь"_s);
    calendar->setSelectedDate(present.isValid() ? present : m_today);
    const auto take = [this, menu](QDate date) {
        setText(dateText(date));
        menu->close();
        setFocus();
        emit picked();
    };
    connect(calendar, &QCalendarWidget::clicked, this, take);
    connect(calendar, &QCalendarWidget::activated, this, take);
    auto* action = new QWidgetAction(menu);
    action->setDefaultWidget(calendar);
    menu->addAction(action);
    menu->popup(mapToGlobal(rect().bottomLeft()));
    calendar->setFocus();
}

} // namespace refbooks
