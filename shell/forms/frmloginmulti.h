#pragma once

#include "shell/access/users.h"
#include "shell/forms/passwordgate.h"

class QComboBox;

namespace shell {

class Settings;

// Asks which user of the file signs in. The name signed in last is offered first.
class frmLoginMulti final : public PasswordGate
{
    Q_OBJECT

public:
    // Null when the dialog was cancelled.
    static std::optional<SignedIn> ask(const Users& users, Settings& settings, Prompt& prompt,
                                       QWidget* parent = nullptr);

    frmLoginMulti(const Users& users, const QString& lastName, Prompt& prompt,
                  QWidget* parent = nullptr);
    const std::optional<SignedIn>& user() const { return m_user; }

protected:
    bool isRight(const QString& password) override;

private:
    const Users& m_users;
    QComboBox* m_names;
    std::optional<SignedIn> m_user;
};

} // namespace shell
