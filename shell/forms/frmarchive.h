#pragma once

#include "shell/files/archive.h"
#include "shell/files/copypreview.h"

#include <QDialog>
#include <QThreadPool>

#include <memory>
#include <optional>

class QTimer;

namespace shell {

class FileChooser;
class Prompt;

namespace Ui {
class frmArchive;
}

// Lists the copies in "Архив" and tells what the selected one holds, so that the right one is
// restored. Copies can be deleted here; restoring is the caller's work.
class frmArchive final : public QDialog
{
    Q_OBJECT

public:
    // `journal` is the file whose copies are listed, "" for all.
    frmArchive(const Archive& archive, const QString& journal, Prompt& prompt, FileChooser& chooser,
               QWidget* parent = nullptr);
    ~frmArchive() override;

    // The selected copy, if any.
    std::optional<ArchivedCopy> chosen() const;

signals:
    // The contents of the selected copy have been read, or could not be.
    void previewShown();

private:
    void list();
    void startPreview();
    void readPreview();
    void showPreview(const QString& path, const QString& text, bool good);
    void removeChosen();

    const Archive& m_archive;
    QString m_journal;
    Prompt& m_prompt;
    FileChooser& m_chooser;
    QList<ArchivedCopy> m_copies;
    QTimer* m_pause; // while the arrow keys run through the list, nothing is read
    std::unique_ptr<Ui::frmArchive> ui;
    QThreadPool m_readers; // last: it waits for its thread before anything else goes
};

} // namespace shell
