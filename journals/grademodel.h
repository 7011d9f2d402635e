#pragma once

#include "journals/gradebook.h"
#include "journals/gridroles.h"
#include "shell/wording.h"

#include <QAbstractTableModel>

namespace journals {

// The sheet of the grades journal as its grid shows it: a row per student and one of averages
// below; number and name, the grades, and the student's average where there is one.
class GradeModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int kLeadColumns = 2;

    GradeModel(GradeBook& book, shell::Wording wording, QObject* parent = nullptr);

    const GradeSheet* sheet() const { return m_book.sheet(); }

    // See the functions of GradeBook.
    bool load(const GradeSelection& selection);
    void clear();
    int set(int grade, const QModelIndexList& indexes);
    bool offers(const QModelIndex& index) const;
    void save();
    bool mayLeave();
    void undo();
    void redo();

    // Where the grades begin and end; the same when there are none.
    int firstCellColumn() const { return kLeadColumns; }
    int endCellColumn() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void announceAll();
    bool isAverageRow(int row) const;
    // The grade's column, or null.
    const GradeColumn* gradeColumn(int column) const;
    QString text(int row, int column) const;
    QString spokenText(int row, int column) const;
    QString headerText(int column) const;
    QString spokenHeader(int column) const;

    GradeBook& m_book;
    shell::Wording m_wording;
};

} // namespace journals
