#include "refbooks/forms/bookwidths.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QTableView>

#include <algorithm>
#include <numeric>

namespace refbooks {
namespace {

constexpr int kLeast = 24, kMost = 2000; // pixels

} // namespace

BookWidths::BookWidths(QTableView& view, const std::vector<Column>& columns)
    : QObject(&view)
    , m_view(view)
{
    for (const Column& column : columns)
        m_weights.push_back(column.width);
    view.horizontalHeader()->setMinimumSectionSize(kLeast);
    view.viewport()->installEventFilter(this);
    connect(view.horizontalHeader(), &QHeaderView::sectionResized, this,
            [this] { m_chosen = m_chosen || !m_applying; });
    spread();
}

void BookWidths::restore(const QByteArray& saved)
{
    const QList<QByteArray> parts = saved.split(',');
    if (parts.size() != static_cast<qsizetype>(m_weights.size()))
        return;
    std::vector<int> widths;
    for (const QByteArray& part : parts)
        widths.push_back(part.toInt());
    if (std::ranges::any_of(widths, [](int width) { return width < kLeast || width > kMost; }))
        return;
    const QScopedValueRollback applying(m_applying, true);
    for (std::size_t i = 0; i < widths.size(); ++i)
        m_view.setColumnWidth(static_cast<int>(i), widths[i]);
    m_chosen = true;
}

QByteArray BookWidths::save() const
{
    QByteArrayList parts;
    for (int column = 0; m_chosen && column < m_view.model()->columnCount(); ++column)
        parts << QByteArray::number(std::min(m_view.columnWidth(column), kMost));
    return parts.join(',');
}

bool BookWidths::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && !m_chosen)
        spread();
    return QObject::eventFilter(watched, event);
}

// No column becomes narrower than its header asks for; what is left goes by weight.
void BookWidths::spread()
{
    const QScopedValueRollback applying(m_applying, true);
    const int weights = std::accumulate(m_weights.begin(), m_weights.end(), 0);
    std::vector<int> widths;
    for (std::size_t i = 0; i < m_weights.size(); ++i)
        widths.push_back(std::max(m_weights[i],
                                  m_view.horizontalHeader()->sectionSizeHint(static_cast<int>(i))));
    const int spare = m_view.viewport()->width() - std::accumulate(widths.begin(), widths.end(), 0);
    for (std::size_t i = 0; i < widths.size(); ++i)
        m_view.setColumnWidth(static_cast<int>(i),
                              widths[i] + std::max(0, spare) * m_weights[i] / weights);
}

} // namespace refbooks
