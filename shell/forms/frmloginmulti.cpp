#include "shell/forms/frmloginmulti.h"

#include "shell/settings.h"

#include <QComboBox>
#include <QFormLayout>

using namespace Qt::StringLiterals;

namespace shell {

std::optional<SignedIn> frmLoginMulti::ask(const Users& users, Settings& settings, Prompt& prompt,
                                           QWidget* parent)
{
    frmLoginMulti dialog(users, settings.text(Setting::Login), prompt, parent);
    if (dialog.exec() != QDialog::Accepted) {
        return {};
    }
    settings.setText(Setting::Login, dialog.user()->name);
    return dialog.user();
}

frmLoginMulti::frmLoginMulti(const Users& users, const QString& lastName, Prompt& prompt,
                             QWidget* parent)
    : PasswordGate(u"Вход в программу"_s, prompt, parent)
    , m_users(users)
    , m_names(new QComboBox(this))
{
    setObjectName(u"frmLoginMulti"_s);
    m_names->setObjectName(u"cmbUser"_s);
    m_names->setAccessibleName(u"Пользователь"_s);
    for (const UserRecord& row : users.rows()) {
        m_names->addItem(row.user.name);
    }
    m_names->setCurrentIndex(users.offered(lastName));
    form().insertRow(0, u"П&ользователь:"_s, m_names);
}

bool frmLoginMulti::isRight(const QString& password)
{
    m_user = m_users.signIn(m_names->currentIndex(), password);
    return m_user.has_value();
}

} // namespace shell
