#pragma once

#include "journals/attendancesheet.h"

#include <QColor>
#include <QHash>
#include <QStyledItemDelegate>

#include <utility>

namespace journals {

// Paints the states that GridRole names in the looks of the journal grids, and the
// lines between the cells. It draws them itself: a month has a thousand cells, and the
// style's way of drawing one takes several times as long.
class JournalDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    QColor textColor(AbsenceState state, const QPalette& palette, const QColor& background,
                     bool selected) const;

    // By state and background; finding a readable colour is costly.
    mutable QHash<std::pair<int, QRgb>, QColor> m_colors;
};

} // namespace journals
