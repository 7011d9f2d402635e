// How students × disciplines stand on paper.
#include "reports/statements/gradetable.h"
#include "reports/worded.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {

using namespace papers;

namespace {

// Millimetres.
constexpr double kLeastGrade = 8, kMostGrade = 12, kAverage = 12, kCount = 7, kMissed = 10,
                 kRemark = 20;
const QString kNotAssessed = u"н/а"_s;

// Where the columns stand.
class Columns
{
public:
    explicit Columns(const GradeTable& table)
        : m_disciplines(static_cast<int>(table.sheet.columns.size()))
        , m_isFinal(table.isFinal())
    {}

    int disciplines() const { return m_disciplines; }
    int average() const { return kNumberColumns + m_disciplines; }
    int count(int grade) const { return average() + 6 - grade; } // 5 stands first
    int lacking() const { return count(2) + 1; }
    int counts() const { return m_isFinal ? 5 : 4; }
    int missed() const { return average() + 1 + counts(); }
    int all() const { return missed() + 2 + (m_isFinal ? 1 : 0); }
    int afterDisciplines() const { return all() - average(); }

private:
    int m_disciplines;
    bool m_isFinal;
};

class TablePaper
{
public:
    explicit TablePaper(const GradeTable& table)
        : m_table(table)
        , m_columns(table)
        , m_rows(static_cast<int>(table.sheet.students.size()))
    {}

    void fill(Paper& paper)
    {
        setWidths(paper.widths);
        paper.head = head();
        for (std::size_t student = 0; student < m_table.sheet.students.size(); ++student)
            paper.body.push_back(studentRow(student));
        addTotals(paper.body);
    }

private:
    void setWidths(std::vector<double>& widths) const
    {
        const bool isFinal = m_table.isFinal();
        const double others = kNumberWidth + kNameWidth + kAverage + kCount * m_columns.counts()
                              + 2 * kMissed + (isFinal ? kRemark : 0);
        const int disciplines = m_columns.disciplines();
        const double each = std::clamp((kLandscapeWidth - others) / std::max(1, disciplines),
                                       kLeastGrade, kMostGrade);
        widths = {kNumberWidth, kNameWidth};
        widths.insert(widths.end(), static_cast<std::size_t>(disciplines), each);
        widths.push_back(kAverage);
        widths.insert(widths.end(), static_cast<std::size_t>(m_columns.counts()), kCount);
        widths.insert(widths.end(), 2, kMissed);
        if (isFinal)
            widths.push_back(kRemark);
    }

    std::vector<Row> head() const
    {
        std::vector<Row> head{studentHeads(), {}};
        for (const auto& column : m_table.sheet.columns)
            head[0].push_back(rotatedHeading(column.title, 2));
        head[0].push_back(rotatedHeading(u"Средний балл"_s, 2));
        head[0].push_back(heading(u"Количество"_s, m_columns.counts()));
        for (const QString& grade : {u"5"_s, u"4"_s, u"3"_s, u"2"_s})
            head[1].push_back(heading(grade));
        if (m_table.isFinal())
            head[1].push_back(heading(kNotAssessed));
        head[0].push_back(heading(u"Пропущено, час."_s, 2));
        head[1].push_back(rotatedHeading(u"всего"_s));
        head[1].push_back(rotatedHeading(u"неуваж."_s));
        if (m_table.isFinal())
            head[0].push_back(heading(u"Примечание"_s, 1, 2));
        return head;
    }

    Row studentRow(std::size_t student) const
    {
        const auto& row = m_table.sheet.students[student];
        const int line = static_cast<int>(student);
        const GradeCounts counts = m_table.countsOf(student);
        const QString range = across(line, kNumberColumns, m_columns.disciplines());
        const bool any = m_columns.disciplines() > 0;
        Row cells = studentCells(student + 1, row.name);
        for (std::size_t column = 0; column < row.cells.size(); ++column)
            cells.push_back(m_table.lacks(student, column) ? text(kNotAssessed, Align::Centre)
                                                           : gradeCell(row.cells[column].grade));
        cells.push_back(
            bold(averageCell(counts.average(), any ? averageFormula(range) : QString())));
        for (int grade = 5; grade >= 2; --grade)
            cells.push_back(countCell(counts.of[static_cast<std::size_t>(grade)],
                                      any ? countFormula(range, grade) : QString()));
        if (m_table.isFinal())
            cells.push_back(
                countCell(counts.notAssessed,
                          any ? u"COUNTIF(%1,\"%2\")"_s.arg(range, kNotAssessed) : QString()));
        cells.push_back(hours(m_table.missed[student].total()));
        cells.push_back(hours(m_table.missed[student].unexcused, Ink::Unexcused));
        if (m_table.isFinal())
            cells.push_back(emptyCell());
        return cells;
    }

    // A row of the table's foot: what `cellOf` makes of each discipline's grades.
    template <class CellOf>
    Row foot(const QString& label, CellOf cellOf) const
    {
        Row row{totalLabel(label)};
        for (std::size_t column = 0; column < m_table.sheet.columns.size(); ++column) {
            const int at = kNumberColumns + static_cast<int>(column);
            row.push_back(cellOf(columnCounts(m_table.sheet, column),
                                 m_rows > 0 ? down(at, m_rows) : QString(), column));
        }
        return row;
    }
    void close(Row& row, int filled = 0) const
    {
        row.push_back(emptyCell(m_columns.afterDisciplines() - filled));
    }
    static QString ifAny(const QString& range, QString (*formula)(const QString&))
    {
        return range.isEmpty() ? QString() : formula(range);
    }

    Row averageRow() const
    {
        Row row = foot(u"Средний балл, всего"_s,
                       [](const GradeCounts& counts, const QString& range, std::size_t) {
                           return bold(averageCell(counts.average(), ifAny(range, averageFormula)));
                       });
        const Performance sums = m_table.performance();
        const bool any = m_rows > 0 && m_columns.disciplines() > 0;
        const QString all = place(kNumberColumns, 0) + u':'
                            + place(kNumberColumns + m_columns.disciplines() - 1, m_rows - 1);
        row.push_back(
            bold(averageCell(sums.grades.average(), any ? averageFormula(all) : QString())));
        for (int grade = 5; grade >= 2; --grade)
            row.push_back(sumCell(sums.grades.of[static_cast<std::size_t>(grade)],
                                  m_columns.count(grade), m_rows));
        if (m_table.isFinal())
            row.push_back(sumCell(sums.grades.notAssessed, m_columns.lacking(), m_rows));
        const journals::Absence missed = m_table.totalMissed();
        row.push_back(sumCell(missed.total(), m_columns.missed(), m_rows));
        row.push_back(sumCell(missed.unexcused, m_columns.missed() + 1, m_rows));
        if (m_table.isFinal())
            row.push_back(emptyCell());
        return row;
    }

    Row countRow(const QString& label, int grade) const
    {
        Row row =
            foot(label, [grade](const GradeCounts& counts, const QString& range, std::size_t) {
                return countCell(counts.of[static_cast<std::size_t>(grade)],
                                 range.isEmpty() ? QString() : countFormula(range, grade));
            });
        close(row);
        return row;
    }

    Row withoutRow() const
    {
        Row row = foot(m_table.isFinal() ? u"Не аттестовано"_s : u"Без оценки"_s,
                       [this](const GradeCounts& counts, const QString& range, std::size_t column) {
                           const QString formula =
                               m_table.isFinal() ? u"COUNTIF(%1,\"н/а\")"_s : u"COUNTBLANK(%1)"_s;
                           return countCell(m_table.isFinal() ? m_table.lacking(column)
                                                              : m_rows - counts.graded(),
                                            range.isEmpty() ? QString() : formula.arg(range));
                       });
        close(row);
        return row;
    }

    // The share of the students who satisfy the condition on their counts of grades.
    QString shareFormula(const QString& good) const
    {
        if (m_rows == 0)
            return {};
        const auto counts = [this](int grade) { return down(m_columns.count(grade), m_rows); };
        QString condition = u"("_s + counts(2) + u"=0)*"_s + good;
        if (m_table.isFinal())
            condition += u"*("_s + down(m_columns.lacking(), m_rows) + u"=0)"_s;
        return u"SUMPRODUCT(%1)/%2*100"_s.arg(condition.arg(counts(5), counts(4), counts(3)),
                                              QString::number(m_rows));
    }

    Row qualityRow() const
    {
        Row row = foot(u"Качественная, %"_s,
                       [](const GradeCounts& counts, const QString& range, std::size_t) {
                           return rateCell(counts.quality(), ifAny(range, qualityFormula));
                       });
        row.push_back(
            bold(rateCell(m_table.performance().quality(), shareFormula(u"(%3=0)*(%1+%2>0)"_s))));
        close(row, 1);
        return row;
    }

    Row passRow() const
    {
        Row row =
            foot(u"Общая, %"_s, [](const GradeCounts& counts, const QString& range, std::size_t) {
                return rateCell(counts.passRate(), ifAny(range, passFormula));
            });
        row.push_back(
            bold(rateCell(m_table.performance().passRate(), shareFormula(u"(%1+%2+%3>0)"_s))));
        close(row, 1);
        return row;
    }

    Row teacherRow() const
    {
        Row row{totalLabel(worded(m_table.source.wording, u"Преподаватель"_s))};
        for (const auto& column : m_table.sheet.columns) {
            const auto found = m_table.teachers.find(column.discipline);
            QString names = found == m_table.teachers.end() ? QString() : found->second;
            Cell cell = text(names.replace(u", "_s, u"\n"_s), Align::Centre);
            cell.rotated = true;
            row.push_back(cell);
        }
        close(row);
        return row;
    }

    void addTotals(std::vector<Row>& body) const
    {
        body.push_back(averageRow());
        if (!m_table.isFinal()) {
            for (int grade = 5; grade >= 2; --grade)
                body.push_back(countRow(u"«%1»"_s.arg(grade), grade));
            body.push_back(countRow(u"Зачет"_s, journals::kPassGrade));
        }
        body.push_back(withoutRow());
        body.push_back(qualityRow());
        body.push_back(passRow());
        body.push_back(teacherRow());
    }

    const GradeTable& m_table;
    Columns m_columns;
    int m_rows;
};

} // namespace

void layOut(const GradeTable& table, Paper& paper)
{
    TablePaper(table).fill(paper);
}

} // namespace reports
