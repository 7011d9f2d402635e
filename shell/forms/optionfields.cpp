#include "shell/forms/optionfields.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QGroupBox>
#include <QLayout>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace shell {

QLineEdit* optionLine(const QString& name, const QString& meaning, int limit)
{
    auto* line = new QLineEdit;
    line->setObjectName(name);
    line->setAccessibleName(meaning);
    line->setMaxLength(limit);
    return line;
}

QCheckBox* optionBox(const QString& name, const QString& caption)
{
    auto* box = new QCheckBox(caption);
    box->setObjectName(name);
    return box;
}

QDateEdit* optionDate(const QString& name, const QString& meaning)
{
    auto* date = new QDateEdit;
    date->setObjectName(name);
    date->setAccessibleName(meaning);
    date->setCalendarPopup(true);
    date->setDisplayFormat(u"dd.MM.yyyy"_s);
    return date;
}

QGroupBox* optionGroup(const QString& title, QLayout* layout)
{
    auto* group = new QGroupBox(title);
    group->setLayout(layout);
    return group;
}

} // namespace shell
