#pragma once

#include <QDate>
#include <QString>

class QCheckBox;
class QDateEdit;
class QGroupBox;
class QLayout;
class QLineEdit;

namespace shell {

// The controls of the options dialog as they all look there. Each has its object name and a
// name for screen readers.
QLineEdit* optionLine(const QString& name, const QString& meaning, int limit);
QCheckBox* optionBox(const QString& name, const QString& caption);
QDateEdit* optionDate(const QString& name, const QString& meaning);
QGroupBox* optionGroup(const QString& title, QLayout* layout);

} // namespace shell
