#pragma once

#include <QStyledItemDelegate>

namespace journals {

// Paints the states that AttendanceModel names in the looks of the journal grids, and the
// lines between the cells.
class AttendanceDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace journals
