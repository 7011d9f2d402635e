#pragma once

#include "shell/access/retrydelay.h"

#include <QDialog>

class QDialogButtonBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QTimer;

namespace shell {

class Prompt;

// A dialog that closes with OK only after the right password. Each wrong one is told and, after
// the first slips, makes one wait longer before the next.
class PasswordGate : public QDialog
{
    Q_OBJECT

public:
    void accept() override;

protected:
    PasswordGate(const QString& title, Prompt& prompt, QWidget* parent);

    // Rows added here stand above the password.
    QFormLayout& form() { return *m_form; }
    virtual bool isRight(const QString& password) = 0;

private:
    void pause(int seconds);
    void tick();

    Prompt& m_prompt;
    RetryDelay m_delay;
    int m_secondsLeft = 0;
    QFormLayout* m_form;
    QLineEdit* m_password;
    QLabel* m_wait;
    QDialogButtonBox* m_buttons;
    QTimer* m_timer;
};

} // namespace shell
