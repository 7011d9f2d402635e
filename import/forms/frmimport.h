#pragma once

#include "import/forms/importtimetable.h"
#include "import/lists/columnmemory.h"
#include "import/lists/listimport.h"

#include <QDialog>

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTableView;
class QTableWidget;
class QVBoxLayout;

namespace imports {

class ReportModel;

struct ListSource
{
    QString path;
    refbooks::Book book{};
    std::optional<int> group; // of new students
};

// "Импорт списка": which column fills which field, what becomes of rows that exist, and row by row
// what the import would do; nothing is written before the button is pressed. Afterwards the same
// window says what was done, and takes it back.
class frmImport final : public QDialog
{
    Q_OBJECT

public:
    frmImport(const ImportParts& parts, ListSource source, std::unique_ptr<ListImport> import,
              QWidget* parent = nullptr);
    ~frmImport() override;

    bool hasImported() const { return m_hasImported; }

private:
    void addChoices(QVBoxLayout& column);
    void addTables(QVBoxLayout& column);
    void addButtons(QVBoxLayout& column);
    void fillColumns();
    void addColumnRow(int column);
    ListChoice choice() const;
    void readSheet();
    void preview();
    void run();
    void undo();
    void saveReport();
    void showNothing(const QString& reason);
    QString memoryKey() const;
    ColumnMemory memory() const;
    void rememberColumns();
    void showReport(const ListReport& report, const QString& what);

    ImportParts m_parts;
    ListSource m_source;
    std::unique_ptr<ListImport> m_import;
    ColumnMatch m_match;
    ReportModel* m_model;
    QComboBox* m_sheet;
    QComboBox* m_group;
    QComboBox* m_existing;
    QCheckBox* m_createMissing;
    QTableWidget* m_columns;
    QTableView* m_rows;
    QLabel* m_counts;
    QPushButton* m_run = nullptr;
    QPushButton* m_undo = nullptr;
    QString m_title; // of the report
    bool m_hasImported = false;
};

} // namespace imports
