#include "journals/forms/wrappingheader.h"

#include "journals/forms/gridlooks.h"
#include "journals/gridroles.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionHeader>

namespace journals {
namespace {

AbsenceState stateOf(const QAbstractItemModel* model, int section)
{
    return static_cast<AbsenceState>(model->headerData(section, Qt::Horizontal, StateRole).toInt());
}

} // namespace

WrappingHeader::WrappingHeader(QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent)
{
    setDefaultAlignment(static_cast<Qt::Alignment>(static_cast<int>(Qt::AlignCenter)
                                                   | static_cast<int>(Qt::TextWordWrap)));
    setSectionsClickable(true);
    setHighlightSections(true);
    constexpr int kLeastWidth = 12;
    setMinimumSectionSize(kLeastWidth);
}

QFont WrappingHeader::sectionFont(int section) const
{
    return stateFont(stateOf(model(), section), font());
}

QSize WrappingHeader::sectionSizeFromContents(int section) const
{
    if (!model())
        return QHeaderView::sectionSizeFromContents(section);
    const int margin = style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, this);
    const QString caption =
        model()->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
    constexpr int kTallest = 1000;
    const QRect room(0, 0, sectionSize(section) - 2 * margin, kTallest);
    const QRect needed = QFontMetrics(sectionFont(section))
                             .boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, caption);
    return needed.size() + QSize(2 * margin, 2 * margin);
}

void WrappingHeader::initStyleOptionForIndex(QStyleOptionHeader* option, int section) const
{
    QHeaderView::initStyleOptionForIndex(option, section);
    QPalette& palette = option->palette;
    if (model()->headerData(section, Qt::Horizontal, DayOffRole).toBool()) {
        palette.setColor(QPalette::Button, dayOffShade(palette));
        palette.setColor(QPalette::Window, dayOffShade(palette));
    }
    const AbsenceState state = stateOf(model(), section);
    if (state != AbsenceState::None)
        palette.setColor(QPalette::ButtonText,
                         stateColor(state, palette, palette.color(QPalette::Button)));
}

void WrappingHeader::paintSection(QPainter* painter, const QRect& rect, int section) const
{
    painter->save();
    painter->setFont(sectionFont(section));
    QHeaderView::paintSection(painter, rect, section);
    painter->restore();
}

} // namespace journals
