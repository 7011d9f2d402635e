#include "shell/forms/statuspanels.h"

#include "shell/session.h"

#include <QAccessible>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QStatusBar>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

QLabel* addPanel(QStatusBar& bar, const QString& name, const QString& meaning)
{
    auto* label = new QLabel(&bar);
    label->setObjectName(name);
    label->setAccessibleDescription(meaning);
    label->setTextFormat(Qt::PlainText);
    label->setContentsMargins(6, 0, 6, 0);
    bar.addPermanentWidget(label);
    return label;
}

// The administrator is usually called so: no need to say it twice.
QString userText(const SignedIn& user)
{
    const QString role = roleName(user.role).toLower();
    return user.name.compare(role, Qt::CaseInsensitive) == 0 ? user.name
                                                             : u"%1 (%2)"_s.arg(user.name, role);
}

} // namespace

StatusPanels::StatusPanels(QStatusBar& bar, Session& session)
    : QObject(&bar)
    , m_session(session)
    , m_progress(new QLabel(&bar))
    , m_file(addPanel(bar, u"panelFile"_s, u"Открытый файл базы данных"_s))
    , m_date(addPanel(bar, u"panelDate"_s, u"Рабочая дата"_s))
    , m_user(addPanel(bar, u"panelUser"_s, u"Пользователь и его роль"_s))
{
    m_progress->setObjectName(u"panelProgress"_s);
    m_progress->setAccessibleDescription(u"Ход работы и сообщения"_s);
    m_progress->setTextFormat(Qt::PlainText);
    m_progress->setContentsMargins(6, 0, 6, 0);
    // A long text must not widen the window.
    m_progress->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    bar.addWidget(m_progress, 1);
    connect(&session, &Session::journalChanged, this, &StatusPanels::showSession);
    connect(&session, &Session::settingsChanged, this, &StatusPanels::showSession);
    connect(&session, &Session::userChanged, this, &StatusPanels::showSession);
    showSession();
}

QString StatusPanels::text() const
{
    return m_progress->text();
}

void StatusPanels::show(const QString& text)
{
    m_progress->setText(text);
    m_progress->setToolTip(text);
    m_progress->repaint(); // the command that reports does not return to the event loop
    QAccessibleEvent said(m_progress, QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
}

void StatusPanels::showSession()
{
    const bool open = m_session.isOpen();
    const QString path = open ? m_session.journal().path() : QString();
    m_file->setText(open ? QFileInfo(path).fileName() : u"Файл не открыт"_s);
    m_file->setToolTip(QDir::toNativeSeparators(path));
    const QDate date = m_session.workingDate();
    m_date->setText(u"Рабочая дата: %1"_s.arg(date.isValid() ? date.toString(u"dd.MM.yyyy"_s)
                                                             : u"не задана"_s));
    m_date->setVisible(open);
    m_user->setText(userText(m_session.user()));
}

} // namespace shell
