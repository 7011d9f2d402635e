#include "journals/forms/attendancewidths.h"

#include "journals/attendance.h"

#include <QHeaderView>
#include <QTableView>

#include <algorithm>

namespace journals {
namespace {

constexpr int kLeast = 12, kMost = 1000; // pixels

} // namespace

AttendanceWidths::AttendanceWidths(QTableView& view)
    : QObject(&view)
    , m_view(view)
{
    constexpr int kRoom = 8; // beside the text, both sides together
    QFont bold = view.font();
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    const auto fit = [&metrics](const char* sample) {
        return metrics.horizontalAdvance(QString::fromUtf8(sample)) + kRoom;
    };
    m_widths = {fit("№ п.п"),      fit("Константинопольский Александр"),
                fit("На начало"),  fit("Вс"),
                fit("12.12.2022"), fit("за месяц,"),
                fit("На конец"),   fit("неуважительных,")};
    m_widths[Day] = std::max(m_widths[Day], fit("88"));
    connect(view.horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int column, int, int width) { keep(column, width); });
}

void AttendanceWidths::restore(const QByteArray& saved)
{
    const QList<QByteArray> parts = saved.split(',');
    if (parts.size() != Kinds)
        return;
    for (std::size_t kind = 0; kind < Kinds; ++kind) {
        const int width = parts[static_cast<qsizetype>(kind)].toInt();
        if (width >= kLeast && width <= kMost)
            m_widths[kind] = width;
    }
}

QByteArray AttendanceWidths::save() const
{
    QByteArrayList parts;
    for (const int width : m_widths)
        parts << QByteArray::number(width);
    return parts.join(',');
}

AttendanceWidths::Kind AttendanceWidths::kindOf(int column) const
{
    if (column < kLeadColumns)
        return static_cast<Kind>(Number + column);
    const int trail = column - (m_view.model()->columnCount() - kTrailColumns);
    if (trail >= 0)
        return static_cast<Kind>(Month + trail);
    return m_lessons ? Lesson : Day;
}

void AttendanceWidths::apply(bool lessons)
{
    m_lessons = lessons;
    m_applying = true;
    for (int column = 0; column < m_view.model()->columnCount(); ++column)
        m_view.setColumnWidth(column, m_widths[kindOf(column)]);
    m_applying = false;
}

void AttendanceWidths::keep(int column, int width)
{
    if (m_applying || column >= m_view.model()->columnCount() || width < kLeast)
        return;
    const Kind kind = kindOf(column);
    m_widths[kind] = width;
    if (kind == Day || kind == Lesson)
        apply(m_lessons);
}

} // namespace journals
