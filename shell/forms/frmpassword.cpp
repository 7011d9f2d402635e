#include "shell/forms/frmpassword.h"

#include "shell/access/programpassword.h"
#include "shell/prompt.h"
#include "shell/settings.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

QLineEdit* passwordLine(const QString& name, const QString& meaning)
{
    auto* line = new QLineEdit;
    line->setObjectName(name);
    line->setAccessibleName(meaning);
    line->setEchoMode(QLineEdit::Password);
    return line;
}

} // namespace

frmPassword::frmPassword(Settings& settings, Prompt& prompt, QWidget* parent)
    : QDialog(parent)
    , m_settings(settings)
    , m_prompt(prompt)
    , m_password(passwordLine(u"txtPassword"_s, u"Новый пароль"_s))
    , m_again(passwordLine(u"txtAgain"_s, u"Повторный ввод пароля"_s))
{
    setObjectName(u"frmPassword"_s);
    setWindowTitle(u"Пароль программы"_s);
    auto* hint =
        new QLabel(u"Пароль спрашивается при каждом запуске программы на этом компьютере.\n"
                   "Чтобы снять пароль, оставьте оба поля пустыми."_s);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(u"cmdOK"_s);
    auto* form = new QFormLayout(this);
    form->addRow(hint);
    form->addRow(u"&Новый пароль:"_s, m_password);
    form->addRow(u"Пов&торный ввод:"_s, m_again);
    form->addRow(buttons);
    m_password->setFocus();
    connect(buttons, &QDialogButtonBox::accepted, this, &frmPassword::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmPassword::reject);
}

void frmPassword::accept()
{
    const QString password = m_password->text();
    if (password != m_again->text()) {
        m_prompt.exclamation(u"Повторный ввод неверен."_s);
        m_again->clear();
        m_again->setFocus();
        return;
    }
    m_settings.setText(Setting::Password,
                       password.isEmpty() ? QString() : protectedPassword(password));
    if (!m_settings.sync()) {
        m_prompt.critical(u"Пароль не сохранен: файл настроек не записывается."_s);
        return;
    }
    m_prompt.information(u"Пароль "_s + (password.isEmpty() ? u"снят."_s : u"установлен."_s));
    QDialog::accept();
}

} // namespace shell
