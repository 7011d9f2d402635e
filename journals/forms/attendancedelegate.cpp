#include "journals/forms/attendancedelegate.h"

#include "journals/attendancemodel.h"
#include "journals/forms/gridlooks.h"

#include <QPainter>

namespace journals {

void AttendanceDelegate::initStyleOption(QStyleOptionViewItem* option,
                                         const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    QPalette& palette = option->palette;
    const auto state = static_cast<AbsenceState>(index.data(AttendanceModel::StateRole).toInt());
    QColor background = palette.color(QPalette::Base);
    if (index.data(AttendanceModel::TotalRole).toBool())
        background = totalShade(palette);
    if (index.data(AttendanceModel::DayOffRole).toBool())
        background = dayOffShade(palette);
    option->backgroundBrush = background;
    option->font = stateFont(state, option->font);
    const QColor selected = stateColor(state, palette, palette.color(QPalette::Highlight));
    palette.setColor(QPalette::Text, stateColor(state, palette, background));
    if (state != AbsenceState::None && state != AbsenceState::Mixed)
        palette.setColor(QPalette::HighlightedText, selected);
}

void AttendanceDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    painter->save();
    painter->setPen(gridLine(option.palette));
    painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
    painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    painter->restore();
}

} // namespace journals
