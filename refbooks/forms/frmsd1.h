#pragma once

#include "refbooks/bookrecord.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QScrollArea;

namespace refbooks {

class RecordControls;

// The dialog in which a row of any reference book is added, copied, edited or looked at.
// Accepted when a row was stored.
class frmSD1 final : public QDialog
{
    Q_OBJECT

public:
    // The session and the prompt must outlive the dialog.
    frmSD1(std::unique_ptr<BookRecord> record, shell::Session& session, shell::Prompt& prompt,
           QWidget* parent = nullptr);
    ~frmSD1() override;

    // Of the row stored last, 0 when none was.
    std::int64_t key() const { return m_key; }

    void accept() override;
    // Esc and the window's cross: asks when something would be lost. The button "Отмена" is
    // an answer already.
    void reject() override;

private:
    void setUpButtons();
    QPushButton* addButton(QLayout& row, const QString& name, const QString& text,
                           void (frmSD1::*action)());
    void showRecord();
    void fillForm(QWidget& page);
    void showProblem();
    void fitOnScreen();
    bool store();
    void storeAndGoOn();
    void leave();

    std::unique_ptr<BookRecord> m_record;
    shell::Session& m_session;
    shell::Prompt& m_prompt;
    std::int64_t m_key = 0;
    QWidget* m_page = nullptr; // holds the controls
    RecordControls* m_controls = nullptr;
    QScrollArea* m_area;
    QLabel* m_problem;
};

} // namespace refbooks
