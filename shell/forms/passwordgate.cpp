#include "shell/forms/passwordgate.h"

#include "shell/prompt.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace shell {

PasswordGate::PasswordGate(const QString& title, Prompt& prompt, QWidget* parent)
    : QDialog(parent)
    , m_prompt(prompt)
    , m_form(new QFormLayout)
    , m_password(new QLineEdit)
    , m_wait(new QLabel)
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
    , m_timer(new QTimer(this))
{
    setWindowTitle(title);
    m_password->setObjectName(u"txtPassword"_s);
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setAccessibleName(u"Пароль"_s);
    m_password->setMinimumWidth(fontMetrics().averageCharWidth() * 32);
    m_form->addRow(u"&Пароль:"_s, m_password);
    m_wait->setObjectName(u"lblWait"_s);
    m_buttons->button(QDialogButtonBox::Ok)->setObjectName(u"cmdOK"_s);
    m_buttons->button(QDialogButtonBox::Cancel)->setObjectName(u"cmdCancel"_s);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(m_form);
    layout->addWidget(m_wait);
    layout->addWidget(m_buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    m_password->setFocus();
    connect(m_buttons, &QDialogButtonBox::accepted, this, &PasswordGate::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &PasswordGate::reject);
    m_timer->setInterval(1000);
    connect(m_timer, &QTimer::timeout, this, &PasswordGate::tick);
}

void PasswordGate::accept()
{
    if (m_secondsLeft > 0) {
        return;
    }
    if (isRight(m_password->text())) {
        QDialog::accept();
        return;
    }
    m_prompt.exclamation(u"Неверный пароль, введите заново!"_s);
    m_password->clear();
    m_password->setFocus();
    pause(m_delay.wrongEntry());
}

void PasswordGate::pause(int seconds)
{
    m_secondsLeft = seconds + 1;
    m_timer->start();
    tick();
}

void PasswordGate::tick()
{
    --m_secondsLeft;
    const bool waits = m_secondsLeft > 0;
    m_wait->setText(waits ? u"Следующая попытка через %1 с"_s.arg(m_secondsLeft) : QString());
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!waits);
    if (!waits) {
        m_timer->stop();
    }
}

} // namespace shell
