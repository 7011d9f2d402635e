#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QCalendarWidget>
#include <QComboBox>
#include <QLineEdit>
#include <QTextEdit>
#include <QWidget>

#include <string>

// The widgets below `root` that a user works with and that have no name for a screen reader, as
// "class objectName, ...". Parts of a compound widget that speaks for them are passed over.
inline std::string withoutAccessibleName(const QWidget& root)
{
    const auto interactive = [](const QWidget* widget) {
        return qobject_cast<const QAbstractButton*>(widget)
               || qobject_cast<const QAbstractItemView*>(widget)
               || qobject_cast<const QAbstractSpinBox*>(widget)
               || qobject_cast<const QComboBox*>(widget) || qobject_cast<const QLineEdit*>(widget)
               || qobject_cast<const QTextEdit*>(widget)
               || qobject_cast<const QCalendarWidget*>(widget);
    };
    const auto partOfAnother = [](const QWidget* widget) {
        const QString name = widget->objectName();
        return name == QStringLiteral("qt_spinbox_lineedit")
               || qobject_cast<const QComboBox*>(widget->parentWidget())
               || qobject_cast<const QLineEdit*>(widget->parentWidget()) // its clear button
               || widget->inherits("QHeaderView") || widget->inherits("QTableCornerButton")
               || widget->inherits("QComboBoxListView");
    };
    QStringList nameless;
    for (QWidget* widget : root.findChildren<QWidget*>()) {
        if (!interactive(widget) || partOfAnother(widget)) {
            continue;
        }
        const auto* seen = QAccessible::queryAccessibleInterface(widget);
        if (!seen || seen->text(QAccessible::Name).trimmed().isEmpty()) {
            nameless << QStringLiteral("%1 %2").arg(
                QString::fromLatin1(widget->metaObject()->className()), widget->objectName());
        }
    }
    return nameless.join(QStringLiteral(", ")).toStdString();
}
