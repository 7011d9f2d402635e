#include "shell/forms/frmarchive.h"

#include "shell/files/filetexts.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/runcommand.h"
#include "ui_frmarchive.h"

#include <QFileInfo>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr int kPauseMilliseconds = 150;

QString dateText(const ArchivedCopy& copy)
{
    return copy.name.made.toString(u"dd.MM.yyyy HH:mm:ss"_s);
}

QString holdsText(const CopyPreview& holds)
{
    return u"Студентов: %1, пропусков: %2, оценок: %3. Размер базы данных: %4."_s.arg(
        QString::number(holds.students), QString::number(holds.absences),
        QString::number(holds.grades), sizeText(holds.bytes));
}

} // namespace

frmArchive::frmArchive(const Archive& archive, const QString& journal, Prompt& prompt,
                       FileChooser& chooser, QWidget* parent)
    : QDialog(parent)
    , m_archive(archive)
    , m_journal(journal)
    , m_prompt(prompt)
    , m_chooser(chooser)
    , m_pause(new QTimer(this))
    , ui(std::make_unique<Ui::frmArchive>())
{
    ui->setupUi(this);
    ui->lvCopies->headerItem()->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
    resize(fontMetrics().averageCharWidth() * 100, fontMetrics().height() * 24);
    m_readers.setMaxThreadCount(1);
    m_pause->setSingleShot(true);
    m_pause->setInterval(kPauseMilliseconds);
    connect(m_pause, &QTimer::timeout, this, &frmArchive::readPreview);
    connect(ui->lvCopies, &QTreeWidget::currentItemChanged, this, &frmArchive::startPreview);
    connect(ui->cmdRestore, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->cmdDelete, &QPushButton::clicked, this, &frmArchive::removeChosen);
    connect(ui->cmdFolder, &QPushButton::clicked, this, [this] {
        const auto copy = chosen();
        m_chooser.reveal(copy ? copy->path : m_archive.folder() + u"/."_s);
    });
    list();
    ui->lvCopies->setFocus();
}

frmArchive::~frmArchive() = default;

std::optional<ArchivedCopy> frmArchive::chosen() const
{
    const int row = ui->lvCopies->indexOfTopLevelItem(ui->lvCopies->currentItem());
    if (row < 0 || row >= m_copies.size()) {
        return std::nullopt;
    }
    return m_copies[row];
}

void frmArchive::list()
{
    m_copies = m_archive.copies(m_journal);
    {
        const QSignalBlocker quiet(ui->lvCopies);
        ui->lvCopies->clear();
        for (const ArchivedCopy& copy : m_copies) {
            const QString why = copy.name.automatic() ? copy.name.reason : u"по команде"_s;
            auto* item = new QTreeWidgetItem(
                ui->lvCopies, {dateText(copy), copy.name.journal, why, sizeText(copy.bytes)});
            item->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
        }
        ui->lvCopies->setCurrentItem(ui->lvCopies->topLevelItem(0));
        for (int column = 0; column < ui->lvCopies->columnCount(); ++column) {
            ui->lvCopies->resizeColumnToContents(column);
        }
    }
    startPreview();
}

void frmArchive::startPreview()
{
    const bool some = chosen().has_value();
    ui->cmdRestore->setEnabled(false); // until the copy has proven readable
    ui->cmdDelete->setEnabled(some);
    ui->lblPreview->setText(some ? u"Чтение копии..."_s : u"Копий в архиве нет."_s);
    if (some) {
        m_pause->start();
    }
}

void frmArchive::readPreview()
{
    const auto copy = chosen();
    if (!copy) {
        return;
    }
    m_readers.clear();
    m_readers.start([this, copy = *copy] {
        QString text;
        bool good = true;
        try {
            text = holdsText(previewOf(copy));
        } catch (const std::exception& error) {
            text = u"Копию нельзя прочитать. Ошибка: %1."_s.arg(QString::fromUtf8(error.what()));
            good = false;
        }
        QMetaObject::invokeMethod(
            this, [this, path = copy.path, text, good] { showPreview(path, text, good); },
            Qt::QueuedConnection);
    });
}

void frmArchive::showPreview(const QString& path, const QString& text, bool good)
{
    const auto copy = chosen();
    if (!copy || copy->path != path) {
        return; // another one has been selected since
    }
    ui->lblPreview->setText(text);
    ui->cmdRestore->setEnabled(good);
    emit previewShown();
}

void frmArchive::removeChosen()
{
    const auto copy = chosen();
    if (!copy
        || !m_prompt.question(u"Удалить копию от %1 (%2)? Вернуть ее будет нельзя."_s.arg(
                                  dateText(*copy), sizeText(copy->bytes)),
                              Answer::No)) {
        return;
    }
    runCommand(m_prompt, u"Копия не удалена."_s, [&] { Archive::remove(*copy); });
    list();
}

} // namespace shell
