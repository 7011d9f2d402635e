#include "journals/forms/columnwidths.h"

#include "journals/attendancemodel.h"
#include "journals/grademodel.h"

#include <QHeaderView>
#include <QTableView>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace journals {
namespace {

constexpr int kLeast = 12, kMost = 1000; // pixels

} // namespace

ColumnWidths::ColumnWidths(QTableView& view, const QStringList& samples, KindOf kindOf)
    : QObject(&view)
    , m_view(view)
    , m_kindOf(std::move(kindOf))
{
    constexpr int kRoom = 8; // beside the text, both sides together
    QFont bold = view.font();
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    for (const QString& sample : samples)
        m_widths.push_back(metrics.boundingRect({}, 0, sample).width() + kRoom);
    connect(view.horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int column, int, int width) { keep(column, width); });
}

void ColumnWidths::restore(const QByteArray& saved)
{
    const QList<QByteArray> parts = saved.split(',');
    if (std::cmp_not_equal(parts.size(), m_widths.size()))
        return;
    for (std::size_t kind = 0; kind < m_widths.size(); ++kind) {
        const int width = parts[static_cast<qsizetype>(kind)].toInt();
        if (width >= kLeast && width <= kMost)
            m_widths[kind] = width;
    }
}

QByteArray ColumnWidths::save() const
{
    QByteArrayList parts;
    for (const int width : m_widths)
        parts << QByteArray::number(width);
    return parts.join(',');
}

void ColumnWidths::apply()
{
    m_applying = true;
    for (int column = 0; column < m_view.model()->columnCount(); ++column)
        m_view.setColumnWidth(column, widthOf(column));
    m_applying = false;
}

void ColumnWidths::keep(int column, int width)
{
    if (m_applying || column >= m_view.model()->columnCount() || width < kLeast)
        return;
    widthOf(column) = width;
    apply();
}

ColumnWidths* attendanceWidths(QTableView& view, const AttendanceModel& model)
{
    constexpr int kDay = kLeadColumns, kLesson = kDay + 1, kMonth = kDay + 2;
    const auto kindOf = [&model](int column) {
        const bool lessons =
            model.sheet() && model.sheet()->selection.mode == AttendanceMode::Lessons;
        if (column < model.firstCellColumn())
            return column;
        if (column >= model.endCellColumn())
            return kMonth + column - model.endCellColumn();
        return lessons ? kLesson : kDay;
    };
    return new ColumnWidths(view,
                            {u"№ п.п"_s, u"Константинопольский Александр"_s, u"На начало"_s,
                             u"Вс\n88"_s, u"12.12.2022"_s, u"за месяц,"_s, u"На конец"_s,
                             u"неуважительных,"_s},
                            kindOf);
}

ColumnWidths* gradeWidths(QTableView& view, const GradeModel& model)
{
    enum Kind { Number, Name, Day, DayWithPass, Month, Final, Discipline, Average };
    const auto kindOf = [&model](int column) -> int {
        if (column < model.firstCellColumn())
            return column;
        if (column >= model.endCellColumn())
            return Average;
        const auto at = static_cast<std::size_t>(column - model.firstCellColumn());
        const GradeSheet& sheet = *model.sheet();
        if (sheet.selection.allDisciplines)
            return Discipline;
        const GradeKind kind = sheet.columns[at].kind;
        if (kind != GradeKind::Current)
            return kind == GradeKind::Monthly ? Month : Final;
        const bool pass =
            std::any_of(sheet.students.begin(), sheet.students.end(), [at](const auto& student) {
                return student.cells[at].grade == kPassGrade;
            });
        return pass ? DayWithPass : Day; // a month of days that fit the word would be too wide
    };
    return new ColumnWidths(view,
                            {u"№ п.п"_s, u"Константинопольский Александр"_s, u"5,00"_s, u"Зачет"_s,
                             u"Сентябрь"_s, u"Зачет"_s, u"Программирование"_s, u"Средний"_s},
                            kindOf);
}

} // namespace journals
