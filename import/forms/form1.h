#pragma once

#include "import/forms/importtimetable.h"
#include "import/period.h"

#include <QDialog>

#include <memory>

class QDateEdit;
class QLabel;
class QPushButton;
class QTableView;
class QTableWidget;

namespace imports {

class PreviewModel;
class Timetable;
struct ImportCounts;
struct LessonChoice;

// "Импорт занятий": the lessons of a period as the timetable has them, what an import would add
// and change, and the import itself. The window stays for another period.
class Form1 final : public QDialog
{
    Q_OBJECT

public:
    Form1(const ImportParts& parts, const QString& path, std::unique_ptr<Timetable> timetable,
          QWidget* parent = nullptr);
    ~Form1() override;

    bool hasImported() const { return m_hasImported; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setUpPreview();
    QDateEdit* dateBox(const QString& name, QDate date);
    QLayout* choiceRows(const QString& path);
    QLayout* listRow();
    QLayout* buttonRow();
    void setUpSummary();

    void takePeriod();
    // Reads the lessons of the period and counts what would be imported.
    void refresh();
    void showSummary(const ImportCounts& counts, const QString& caption);
    void clearSummary();
    void runImport();
    void finish(const ImportCounts& counts);

    ImportParts m_parts;
    std::unique_ptr<Timetable> m_timetable;
    Period m_period;
    std::shared_ptr<const LessonChoice> m_choice; // null while the period is not importable
    bool m_hasImported = false;

    PreviewModel* m_model;
    QTableView* m_preview;   // HF1
    QTableWidget* m_summary; // tblSummary
    QLabel* m_summaryCaption;
    QLabel* m_note;              // lblNote
    QLabel* m_statusText;        // lblStatus
    QDateEdit* m_from = nullptr; // DTPicker1
    QDateEdit* m_to = nullptr;   // DTPicker2
    QPushButton* m_ok = nullptr;
    QPushButton* m_cancel = nullptr;
};

} // namespace imports
