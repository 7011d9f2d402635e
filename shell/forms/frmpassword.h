#pragma once

#include <QDialog>

class QLineEdit;

namespace shell {

class Prompt;
class Settings;

// Sets or, with an empty entry, removes the program password. It is typed twice.
class frmPassword final : public QDialog
{
    Q_OBJECT

public:
    frmPassword(Settings& settings, Prompt& prompt, QWidget* parent = nullptr);
    void accept() override;

private:
    Settings& m_settings;
    Prompt& m_prompt;
    QLineEdit* m_password;
    QLineEdit* m_again;
};

} // namespace shell
