#pragma once

#include <QLabel>

namespace imports {

// A label whose access key leads to the control; the layout that it is put into owns it.
inline QLabel* labelFor(const QString& text, QWidget* buddy)
{
    auto* label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

} // namespace imports
