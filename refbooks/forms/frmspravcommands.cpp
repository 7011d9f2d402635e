#include "jet/database.h"
#include "refbooks/booklistmodel.h"
#include "refbooks/deletion.h"
#include "refbooks/forms/frmanaliz.h"
#include "refbooks/forms/frmcopyto.h"
#include "refbooks/forms/frmsd1.h"
#include "refbooks/forms/frmsprav.h"
#include "refbooks/worded.h"
#include "refbooks/workloadclear.h"
#include "refbooks/workloadcopy.h"
#include "refbooks/workloadlinks.h"
#include "sheets/table.h"
#include "shell/forms/runcommand.h"
#include "shell/forms/tableexport.h"
#include "shell/session.h"
#include "shell/statusline.h"
#include "ui_frmsprav.h"

#include <QClipboard>
#include <QGuiApplication>

#include <map>
#include <numeric>

// What the commands of the list window do.

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

const QString kNotOpened = u"Запись не открыта."_s;
const QString kNotWritten = u"Список не записан."_s;

// A row as tab-separated text that spreadsheets take.
QString tabbed(const QStringList& cells)
{
    QString line = cells.join(u'\t');
    line.replace(u'\n', u' ');
    return line + u'\n';
}

static_assert(static_cast<int>(ColumnKind::Date) == static_cast<int>(sheets::Kind::Date));
static_assert(static_cast<int>(Alignment::Centre) == static_cast<int>(sheets::Alignment::Centre));

// The list as it is shown, for a file.
sheets::Table shownTable(const BookList& list, const QString& title)
{
    sheets::Table table;
    table.title = title;
    table.rows = list.rowCount();
    table.text = [&list](int row, int column) { return list.text(row, column); };
    for (std::size_t i = 0; i < list.columns().size(); ++i) {
        const Column& column = list.columns()[i];
        table.columns.push_back({column.header,
                                 static_cast<sheets::Kind>(list.kind(static_cast<int>(i))),
                                 static_cast<sheets::Alignment>(column.alignment)});
    }
    return table;
}

} // namespace

frmSPRAV::Command frmSPRAV::commandOf(std::string_view key)
{
    static const std::map<std::string_view, Command> kCommands = {
        {"keyAdd", &frmSPRAV::addRecord},         {"keyEdit", &frmSPRAV::editRecord},
        {"keyCopy", &frmSPRAV::copyRecord},       {"keyDel", &frmSPRAV::deleteRecords},
        {"keyCopyTo", &frmSPRAV::copyWorkload},   {"keyAllDay", &frmSPRAV::clearWorkload},
        {"keyNagrLock", &frmSPRAV::linkWorkload}, {"keyAnl", &frmSPRAV::analyseWorkload},
        {"keyJur", &frmSPRAV::openAttendance},    {"keyImp", &frmSPRAV::importRows},
        {"keyRefresh", &frmSPRAV::refresh},       {"keyExport", &frmSPRAV::exportRows},
    };
    return kCommands.at(key);
}

std::vector<std::int64_t> frmSPRAV::selectedKeys() const
{
    return m_model->list().keys(ui->lvList->selectedRowNumbers());
}

std::optional<std::int64_t> frmSPRAV::currentKey() const
{
    const int row = ui->lvList->currentIndex().row();
    return row < 0 ? std::nullopt : std::optional(m_model->list().key(row));
}

void frmSPRAV::openRecord(RecordMode mode, std::int64_t key)
{
    std::int64_t stored = 0;
    shell::runCommand(m_parts.prompt, kNotOpened, [&] {
        auto record = BookRecord::open(m_parts.session, m_parts.prompt, m_book, mode, key);
        if (!record)
            return;
        if (mode == RecordMode::New)
            record->preset(m_filter.listFilter());
        frmSD1 dialog(std::move(record), m_parts.session, m_parts.prompt, this);
        dialog.exec();
        stored = dialog.key();
    });
    if (stored != 0)
        showStored(stored);
}

// Shows the row stored; a filter line that hides it gives way.
void frmSPRAV::showStored(std::int64_t key)
{
    refill(key);
    if (!m_model->list().rowOfKey(key) && !ui->txtFind->text().isEmpty()) {
        ui->txtFind->clear();
        goToKey(key, ui->lvList->currentIndex().row());
    }
    m_parts.status.show(m_model->list().rowOfKey(key)
                            ? u"Запись сохранена."_s
                            : u"Запись сохранена, но не входит в показанный список."_s);
    ui->lvList->setFocus();
}

void frmSPRAV::addRecord()
{
    openRecord(RecordMode::New, 0);
}

void frmSPRAV::editRecord()
{
    if (const auto key = currentKey())
        openRecord(RecordMode::Edit, *key);
}

void frmSPRAV::copyRecord()
{
    if (const auto key = currentKey())
        openRecord(RecordMode::Copy, *key);
}

void frmSPRAV::deleteRecords()
{
    shell::runCommand(m_parts.prompt, u"Удаление не закончено."_s, [this] {
        Deletion(m_parts.session, m_parts.prompt, m_parts.status)
            .deleteSelected(m_book, selectedKeys());
    });
    refill();
}

void frmSPRAV::copyWorkload()
{
    shell::runCommand(m_parts.prompt, u"Копирование не закончено."_s, [this] {
        const auto keys = selectedKeys();
        WorkloadCopy copying(m_parts.session, m_parts.prompt, m_parts.status);
        frmCopyTo chooser(copying.targets(CopyTo::Groups, keys),
                          copying.targets(CopyTo::Subgroups, keys), m_parts.session.wording(),
                          this);
        if (chooser.exec() == QDialog::Accepted)
            copying.copy(keys, chooser.to(), chooser.chosen());
    });
    refill();
}

void frmSPRAV::clearWorkload()
{
    shell::runCommand(m_parts.prompt, u"Нагрузка не удалена."_s,
                      [this] { deleteAllWorkload(m_parts.session, m_parts.prompt); });
    refill();
}

void frmSPRAV::linkWorkload()
{
    shell::runCommand(m_parts.prompt, u"Связи не изменены."_s, [this] {
        WorkloadLinks(m_parts.session, m_parts.prompt, m_parts.status).linkOrUnlink(selectedKeys());
    });
    refill();
    ui->lvList->setFocus();
}

// The rows selected when there are several, else all that are shown.
void frmSPRAV::analyseWorkload()
{
    shell::runCommand(m_parts.prompt, u"Часы не подсчитаны."_s, [this] {
        auto keys = selectedKeys();
        if (keys.size() < 2) {
            std::vector<int> rows(static_cast<std::size_t>(m_model->rowCount()));
            std::iota(rows.begin(), rows.end(), 0);
            keys = m_model->list().keys(rows);
        }
        const auto write = [this](const sheets::Table& table) { exportTable(table); };
        frmAnaliz(m_parts.session, std::move(keys), write, this).exec();
    });
}

void frmSPRAV::openAttendance()
{
    shell::runCommand(m_parts.prompt, u"Журнал не открыт."_s, [this] {
        const auto key = currentKey();
        const auto place = key ? workloadPlace(m_parts.session.database(), *key) : std::nullopt;
        if (place)
            m_parts.openAttendance(*place);
    });
}

void frmSPRAV::importRows()
{
    bool changed = false;
    shell::runCommand(m_parts.prompt, u"Импорт не закончен."_s,
                      [&] { changed = m_parts.import(m_book, m_filter.listFilter(), this); });
    if (changed)
        refill();
}

void frmSPRAV::refresh()
{
    refill();
    m_parts.status.show(u"Список обновлен."_s);
}

void frmSPRAV::exportRows()
{
    shell::runCommand(m_parts.prompt, kNotWritten, [this] {
        QString title = m_filter.caption();
        if (m_filter.isShown())
            title +=
                u' ' + (m_book == Book::Workload ? ui->cboSecond : ui->cboFirst)->currentText();
        exportTable(shownTable(m_model->list(), title.trimmed()));
    });
}

void frmSPRAV::exportTable(const sheets::Table& table)
{
    shell::TableExport(m_parts.chooser, m_parts.prompt, m_parts.status, m_parts.documentsFolder)
        .write(table);
}

void frmSPRAV::copyRows()
{
    copyText(false);
}

void frmSPRAV::copyRowsWithHeads()
{
    copyText(true);
}

void frmSPRAV::copyText(bool withHeads)
{
    const BookList& list = m_model->list();
    const int columns = m_model->columnCount();
    QString text;
    QStringList cells;
    for (int column = 0; withHeads && column < columns; ++column)
        cells << list.columns()[static_cast<std::size_t>(column)].header;
    if (withHeads)
        text += tabbed(cells);
    const auto rows = ui->lvList->selectedRowNumbers();
    for (const int row : rows) {
        cells.clear();
        for (int column = 0; column < columns; ++column)
            cells << QString(list.text(row, column)).replace(u'\t', u' ');
        text += tabbed(cells);
    }
    QGuiApplication::clipboard()->setText(text);
    m_parts.status.show(u"Скопировано строк: %1"_s.arg(rows.size()));
}

} // namespace refbooks
