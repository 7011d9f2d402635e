#pragma once

#include "shell/forms/passwordgate.h"

namespace shell {

class Settings;

// Asks for the program password when one is set.
class frmLogin final : public PasswordGate
{
    Q_OBJECT

public:
    // False when a password is set and was not given. Opens nothing when none is set.
    static bool pass(const Settings& settings, Prompt& prompt, QWidget* parent = nullptr);

    frmLogin(QString stored, Prompt& prompt, QWidget* parent = nullptr);

protected:
    bool isRight(const QString& password) override;

private:
    QString m_stored; // as the settings keep it
};

} // namespace shell
