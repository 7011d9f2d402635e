#pragma once

#include <QStyledItemDelegate>

namespace journals {

// Paints the states that AttendanceModel names in the looks of the journal grids.
class AttendanceDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace journals
