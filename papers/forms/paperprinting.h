#pragma once

#include "papers/paper.h"

#include <QPageLayout>

class QWidget;

namespace shell {
class Settings;
}

namespace papers {

// The page that documents of this kind were last set up for, else A4 with room for the binder
// on the left. Requires papers.
QPageLayout pageLayoutOf(const Document& document, const shell::Settings& settings);

// Shows the preview, from which the user sets up the page, prints or saves a PDF file. The page
// setup is kept for documents of the kind. Requires papers.
void showPreview(const Document& document, shell::Settings& settings, QWidget* parent);

// Writes the document as a PDF file with the same page setup. The file is there whole or not
// at all. Throws jet::Error. Requires papers.
void writePdf(const Document& document, const QString& path, const shell::Settings& settings);

} // namespace papers
