#pragma once

#include "refbooks/lookups.h"

#include <QComboBox>

namespace refbooks {

// A drop-down list that is searched by typing any part of a row's text. What is typed stays
// as it is until it names a row.
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
    // Turning the wheel over a box that is only passed by must not change a record.
    void wheelEvent(QWheelEvent* event) override;

private:
    void complete();

    const Choices& m_choices;
};

} // namespace refbooks
