#include "shell/forms/frmworkdate.h"

#include "shell/forms/optionfields.h"

#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>

using namespace Qt::StringLiterals;

namespace shell {

frmWorkDate::frmWorkDate(QDate present, QWidget* parent)
    : QDialog(parent)
    , m_date(optionDate(u"DT0"_s, u"Рабочая дата"_s))
{
    setObjectName(u"frmWorkDate"_s);
    setWindowTitle(u"Рабочая дата"_s);
    m_date->setDate(present.isValid() ? present : QDate::currentDate());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    auto* form = new QFormLayout(this);
    form->addRow(u"&Рабочая дата:"_s, m_date);
    form->addRow(buttons);
    m_date->setFocus();
    connect(buttons, &QDialogButtonBox::accepted, this, &frmWorkDate::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmWorkDate::reject);
}

QDate frmWorkDate::date() const
{
    return m_date->date();
}

} // namespace shell
