#pragma once

#include "shell/forms/filechooser.h"

#include <QDialog>
#include <QList>

#include <memory>

namespace shell {

namespace Ui {
class frmDrive;
}

// Chooses a removable drive to copy the journal to, or a journal on a drive to bring back.
class frmDrive final : public QDialog
{
    Q_OBJECT

public:
    // The drives of the request must outlive the dialog.
    explicit frmDrive(DriveRequest request, QWidget* parent = nullptr);
    ~frmDrive() override;

    // The path on the drive; valid when accepted.
    QString path() const;

private:
    void listDrives();
    void listFiles();
    void refresh();
    const Drive* drive() const; // the selected one, or null
    // Why the selected drive or file will not do, "" when it will.
    QString obstacle() const;

    DriveRequest m_request;
    QList<Drive> m_drives;
    std::unique_ptr<Ui::frmDrive> ui;
};

} // namespace shell
