#pragma once

#include <QDate>
#include <QDialog>

class QDateEdit;

namespace shell {

// Asks for the working date when a file that wants it asked is opened.
class frmWorkDate final : public QDialog
{
    Q_OBJECT

public:
    // `present` is offered, today when it is invalid.
    explicit frmWorkDate(QDate present, QWidget* parent = nullptr);
    QDate date() const;

private:
    QDateEdit* m_date;
};

} // namespace shell
