#pragma once

#include "reports/forms/documentfiles.h"
#include "reports/request.h"

#include <QDialog>

#include <memory>
#include <optional>

class QRadioButton;

namespace reports {

namespace Ui {
class frmDocument;
}

// The options of the dialog, in their order.
enum class DocumentOption {
    Attendance,
    GradesMonth,
    GradesSubject,
    Card,
    Final,
    Summary,
    Truancy,
    Ranking, // has a window of its own
};

// "Вывод документов": which document, of whom and when; then it is made as a workbook, printed
// or written as a PDF file. The dialog stays for the next document.
class frmDocument final : public QDialog
{
    Q_OBJECT

public:
    frmDocument(DocumentOption option, const DocumentParts& parts, QWidget* parent = nullptr);
    ~frmDocument() override;

    // The user wants the ranking; the dialog was closed.
    bool wantsRanking() const { return m_wantsRanking; }

private:
    void setUpTexts();
    void fillGroups();
    void fillOfGroup();
    void restoreChoice();
    void rememberChoice();
    void connectControls();

    DocumentOption option() const;
    ReportRequest request() const;
    void refreshInputs();
    void focusMissing(const ReportRequest& request);

    // The document, nothing when it cannot be made or was cancelled; the user was told.
    std::optional<papers::Document> make();
    void create();
    void print();
    void writePdf();
    NotSavedText notSaved() const;
    // True when the document was to go to a file for each person, even if they were not written.
    bool hasWrittenEach(FileKind kind, const papers::Document& document);

    DocumentParts m_parts;
    DocumentFiles m_files;
    std::unique_ptr<Ui::frmDocument> ui;
    bool m_wantsRanking = false;
};

} // namespace reports
