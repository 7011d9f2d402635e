#pragma once

#include "refbooks/bookrecord.h"

#include <QDialog>

namespace refbooks {

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

private:
    std::unique_ptr<BookRecord> m_record;
    shell::Session& m_session;
    shell::Prompt& m_prompt;
    std::int64_t m_key = 0;
};

} // namespace refbooks
