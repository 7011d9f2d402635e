#pragma once

#include "papers/paper.h"
#include "reports/forms/documentparts.h"

#include <QString>

class QWidget;

namespace reports {

// What is said when a document stands but could not be written; `named` says whether a file
// name had been settled.
using NotSavedText = std::function<QString(bool named)>;

enum class FileKind { Workbook, Pdf };

// Brings finished documents out of the program: as a workbook, as a PDF file, on paper.
class DocumentFiles
{
public:
    explicit DocumentFiles(DocumentParts parts);

    // Writes the workbook to the folder of documents under a name that is free, or where the
    // user wants it when that fails, and opens it with the program that the desktop has for it.
    // True when it was written.
    bool writeWorkbook(const papers::Document& document, const NotSavedText& notSaved);
    // Asks for a path; true when the file was written.
    bool writePdf(const papers::Document& document, const NotSavedText& notSaved);
    // Writes a file for each person of the document to a new folder in the folder of documents,
    // and shows it. True when all were written.
    bool writeEach(FileKind kind, const papers::Document& document, const NotSavedText& notSaved,
                   QWidget* parent);
    void print(const papers::Document& document, QWidget* parent);

private:
    QString write(const papers::Document& document, const NotSavedText& notSaved);
    void open(const QString& path);

    DocumentParts m_parts;
};

// "Отчет.xlsx" in the folder, or "Отчет (2).xlsx" and so on when that is there; `suffix` may be
// empty, for a folder.
QString freePath(const QString& folder, const QString& name, const QString& suffix);

} // namespace reports
