#include "shell/forms/frmdrive.h"

#include "shell/files/filetexts.h"
#include "ui_frmdrive.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

void fitColumns(QTreeWidget& list)
{
    for (int column = 0; column < list.columnCount(); ++column) {
        list.resizeColumnToContents(column);
    }
}

} // namespace

frmDrive::frmDrive(DriveRequest request, QWidget* parent)
    : QDialog(parent)
    , m_request(std::move(request))
    , ui(std::make_unique<Ui::frmDrive>())
{
    ui->setupUi(this);
    for (const int column : {2, 3}) {
        ui->lvDrives->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    }
    ui->lvFiles->headerItem()->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
    const bool restoring = m_request.aim == DriveAim::RestoreFrom;
    setWindowTitle(restoring ? u"Восстановить со съемного диска"_s
                             : u"Скопировать на съемный диск"_s);
    ui->cmdOK->setText(restoring ? u"&Восстановить"_s : u"&Скопировать"_s);
    ui->lblFiles->setVisible(restoring);
    ui->lvFiles->setVisible(restoring);
    resize(fontMetrics().averageCharWidth() * 90, sizeHint().height());
    connect(ui->lvDrives, &QTreeWidget::currentItemChanged, this, &frmDrive::listFiles);
    connect(ui->lvFiles, &QTreeWidget::currentItemChanged, this, &frmDrive::refresh);
    connect(ui->cmdRefresh, &QPushButton::clicked, this, &frmDrive::listDrives);
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    listDrives();
    ui->lvDrives->setFocus();
}

frmDrive::~frmDrive() = default;

QString frmDrive::path() const
{
    const Drive* chosen = drive();
    if (!chosen) {
        return {};
    }
    const QTreeWidgetItem* file = ui->lvFiles->currentItem();
    const bool restoring = m_request.aim == DriveAim::RestoreFrom;
    const QString name = restoring ? (file ? file->text(0) : QString()) : m_request.fileName;
    return name.isEmpty() ? QString() : QDir(chosen->root).filePath(name);
}

void frmDrive::listDrives()
{
    const QString before = drive() ? drive()->root : QString();
    m_drives = m_request.drives.removable();
    {
        const QSignalBlocker quiet(ui->lvDrives);
        ui->lvDrives->clear();
        for (const Drive& found : m_drives) {
            auto* item = new QTreeWidgetItem(
                ui->lvDrives, {found.label.isEmpty() ? u"Без названия"_s : found.label,
                               QDir::toNativeSeparators(found.root), sizeText(found.freeBytes),
                               sizeText(found.totalBytes)});
            item->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
            item->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
            if (found.root == before || !ui->lvDrives->currentItem()) {
                ui->lvDrives->setCurrentItem(item);
            }
        }
        fitColumns(*ui->lvDrives);
    }
    listFiles();
}

void frmDrive::listFiles()
{
    {
        const QSignalBlocker quiet(ui->lvFiles);
        ui->lvFiles->clear();
        const Drive* chosen = drive();
        if (chosen && m_request.aim == DriveAim::RestoreFrom) {
            const QDir folder(chosen->root);
            for (const QFileInfo& file :
                 folder.entryInfoList({u"*.mdb"_s}, QDir::Files, QDir::Name)) {
                auto* item = new QTreeWidgetItem(
                    ui->lvFiles,
                    {file.fileName(), file.lastModified().toString(u"dd.MM.yyyy HH:mm"_s),
                     sizeText(file.size())});
                item->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
                if (!ui->lvFiles->currentItem() || file.fileName() == m_request.fileName) {
                    ui->lvFiles->setCurrentItem(item);
                }
            }
            fitColumns(*ui->lvFiles);
        }
    }
    refresh();
}

void frmDrive::refresh()
{
    const QString reason = obstacle();
    ui->lblHint->setText(reason.isEmpty() ? u"%1: %2"_s.arg(m_request.aim == DriveAim::RestoreFrom
                                                                ? u"Будет восстановлен файл"_s
                                                                : u"Копия"_s,
                                                            QDir::toNativeSeparators(path()))
                                          : reason);
    ui->cmdOK->setEnabled(reason.isEmpty());
}

const Drive* frmDrive::drive() const
{
    const int row = ui->lvDrives->indexOfTopLevelItem(ui->lvDrives->currentItem());
    return row >= 0 && row < m_drives.size() ? &m_drives[row] : nullptr;
}

QString frmDrive::obstacle() const
{
    const Drive* chosen = drive();
    if (!chosen) {
        return u"Съемных дисков нет. Подключите диск и нажмите «Обновить список»."_s;
    }
    if (m_request.aim == DriveAim::RestoreFrom) {
        return path().isEmpty() ? u"На этом диске нет файлов баз данных (*.mdb)."_s : QString();
    }
    if (chosen->readOnly) {
        return u"Этот диск доступен только для чтения."_s;
    }
    if (chosen->freeBytes < m_request.bytes) {
        return u"На диске мало места: нужно %1, свободно %2."_s.arg(sizeText(m_request.bytes),
                                                                    sizeText(chosen->freeBytes));
    }
    return {};
}

} // namespace shell
