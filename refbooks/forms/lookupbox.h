#pragma once

#include "refbooks/lookups.h"

#include <QComboBox>

namespace refbooks {

// A drop-down list that is searched by typing any part of a row's text. What is typed stays
// as it is until it names a row; Enter, and leaving the box, take a part that only one row has.
class LookupBox final : public QComboBox
{
    Q_OBJECT

public:
    // `choices` must outlive the box. Short lists need no typing.
    LookupBox(const Choices& choices, bool typing, QWidget* parent = nullptr);

    // The row that is shown, -1 when the text names none.
    int row() const;

signals:
    void changed(); // the text, or the row

protected:
    // Enter that takes a row does not go on to the dialog's default button.
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    // Turning the wheel over a box that is only passed by must not change a record.
    void wheelEvent(QWheelEvent* event) override;

private:
    void completeOnLeaving();
    bool complete();

    const Choices& m_choices;
};

} // namespace refbooks
