#include "shell/forms/frmlogin.h"

#include "shell/access/programpassword.h"
#include "shell/settings.h"

#include <QGuiApplication>

#include <utility>

namespace shell {

bool frmLogin::pass(const Settings& settings, Prompt& prompt, QWidget* parent)
{
    const QString stored = settings.text(Setting::Password);
    return stored.isEmpty() || frmLogin(stored, prompt, parent).exec() == QDialog::Accepted;
}

frmLogin::frmLogin(QString stored, Prompt& prompt, QWidget* parent)
    : PasswordGate(QGuiApplication::applicationDisplayName(), prompt, parent)
    , m_stored(std::move(stored))
{
    setObjectName(QStringLiteral("frmLogin"));
}

bool frmLogin::isRight(const QString& password)
{
    return isPassword(password, m_stored);
}

} // namespace shell
