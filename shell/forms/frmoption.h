#pragma once

#include "data/settingsrow.h"

#include <QDialog>

class QCheckBox;
class QDateEdit;
class QLineEdit;
class QRadioButton;
class QSpinBox;
class QTabWidget;

namespace shell {

class Prompt;
class Session;
class Settings;

// "Параметры": what the institution sets for its file, and the wording of the program. The
// values come into force in all windows when the dialog closes with OK.
class frmOption final : public QDialog
{
    Q_OBJECT

public:
    // Requires an open file.
    frmOption(Session& session, Settings& settings, Prompt& prompt, QWidget* parent = nullptr);

    void accept() override;

signals:
    void helpWanted();

private:
    QWidget* institutionPage();
    QWidget* studyPage();
    QWidget* interfacePage();
    QWidget* networkPage();
    QWidget* signatureBox(const QString& title, QLineEdit*& post, QLineEdit*& name,
                          QCheckBox*& print);
    void setUpButtons();
    void fill();
    data::SettingsRow entered() const;
    bool store(const data::SettingsRow& row);

    Session& m_session;
    Settings& m_settings;
    Prompt& m_prompt;
    // Beside each member that a control of the dialog has another name for: its object name.
    QTabWidget* m_tabs;                 // tbsOptions
    QLineEdit* m_institution = nullptr; // txtNaim
    QLineEdit* m_address = nullptr;     // txtAdres
    QLineEdit* m_headPost = nullptr;    // txtRuk1, both boxes
    QLineEdit* m_headName = nullptr;
    QCheckBox* m_printHead = nullptr;       // RukCH
    QLineEdit* m_responsiblePost = nullptr; // txtDol1, both boxes
    QLineEdit* m_responsibleName = nullptr;
    QCheckBox* m_printResponsible = nullptr; // dolCH
    QDateEdit* m_workingDate = nullptr;      // DT0
    QDateEdit* m_yearBegin = nullptr;        // DT1, both pickers
    QDateEdit* m_yearEnd = nullptr;
    QCheckBox* m_useTimetable = nullptr; // Ch1, three boxes
    QCheckBox* m_autoSave = nullptr;
    QCheckBox* m_askDate = nullptr;
    QSpinBox* m_hours = nullptr; // Text12
    QRadioButton* m_school = nullptr;
};

} // namespace shell
