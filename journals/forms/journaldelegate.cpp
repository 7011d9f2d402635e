#include "journals/forms/journaldelegate.h"

#include "journals/forms/gridlooks.h"
#include "journals/gridroles.h"

#include <QPainter>

namespace journals {
namespace {

QColor backgroundOf(const QModelIndex& index, const QPalette& palette)
{
    if (index.data(DayOffRole).toBool())
        return dayOffShade(palette);
    if (index.data(TotalRole).toBool())
        return totalShade(palette);
    return palette.color(QPalette::Base);
}

// A filled corner.
void paintUnsaved(QPainter& painter, const QRect& cell, const QColor& color)
{
    constexpr int kSize = 6;
    const QPoint corner = cell.topRight();
    const QPoint points[] = {corner, corner - QPoint(kSize, 0), corner + QPoint(0, kSize)};
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(points, 3);
    painter.setBrush(Qt::NoBrush);
}

} // namespace

QColor JournalDelegate::textColor(AbsenceState state, const QPalette& palette,
                                  const QColor& background, bool selected) const
{
    if (state == AbsenceState::None || state == AbsenceState::Mixed)
        return palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    const auto key = std::pair(static_cast<int>(state), background.rgb());
    auto known = m_colors.constFind(key);
    if (known == m_colors.constEnd())
        known = m_colors.insert(key, stateColor(state, palette, background));
    return *known;
}

void JournalDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const
{
    const QPalette& palette = option.palette;
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QColor background =
        selected ? palette.color(QPalette::Highlight) : backgroundOf(index, palette);
    painter->fillRect(option.rect, background);
    painter->setPen(gridLine(palette));
    painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
    painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());

    const QString text = index.data().toString();
    if (!text.isEmpty()) {
        constexpr int kMargin = 3;
        const auto state = static_cast<AbsenceState>(index.data(StateRole).toInt());
        const QRect room = option.rect.adjusted(kMargin, 0, -kMargin - 1, 0);
        QFont font = stateFont(state, option.font);
        font.setBold(font.bold() || index.data(UnsavedRole).toBool());
        painter->setFont(font);
        painter->setPen(textColor(state, palette, background, selected));
        painter->drawText(room, index.data(Qt::TextAlignmentRole).toInt(),
                          painter->fontMetrics().elidedText(text, Qt::ElideRight, room.width()));
    }
    if (index.data(UnsavedRole).toBool())
        paintUnsaved(*painter, option.rect,
                     palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        painter->setPen(palette.color(QPalette::Text));
        painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    }
}

} // namespace journals
