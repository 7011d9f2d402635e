#include "import/forms/frmimport.h"

#include "import/forms/labelfor.h"
#include "import/lists/reportmodel.h"
#include "jet/error.h"
#include "sheets/wholefile.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/runcommand.h"
#include "shell/forms/workprogress.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/statusline.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTableWidget>
#include <QVBoxLayout>

#include <functional>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

enum ColumnOfColumns { Head, Example, Field };

// Rows that are refused stand in bold.
class ReportDelegate final : public QStyledItemDelegate
{
public:
    ReportDelegate(const ReportModel& model, QObject* parent)
        : QStyledItemDelegate(parent)
        , m_model(model)
    {}

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->font.setBold(m_model.isRefused(index.row()));
    }

private:
    const ReportModel& m_model;
};

QString cellAt(const TextTable& table, std::size_t row, int column)
{
    return row < table.rows.size() ? table.rows[row].cells.value(column) : QString();
}

} // namespace

frmImport::frmImport(const ImportParts& parts, ListSource source,
                     std::unique_ptr<ListImport> import, QWidget* parent)
    : QDialog(parent)
    , m_parts(parts)
    , m_source(std::move(source))
    , m_import(std::move(import))
    , m_model(new ReportModel(this))
    , m_sheet(new QComboBox)
    , m_group(new QComboBox)
    , m_existing(new QComboBox)
    , m_createMissing(new QCheckBox(u"Создавать &недостающие имена в списках"_s))
    , m_columns(new QTableWidget)
    , m_rows(new QTableView)
    , m_counts(new QLabel)
{
    setObjectName(u"frmImport"_s);
    setWindowTitle(u"Импорт списка: "_s
                   + refbooks::bookTitle(m_source.book, m_parts.session.wording()));
    auto* column = new QVBoxLayout(this);
    addChoices(*column);
    addTables(*column);
    addButtons(*column);
    const QSize roomy(fontMetrics().averageCharWidth() * 130, fontMetrics().height() * 44);
    resize(roomy.boundedTo(screen()->availableSize() * 0.9));
    fillColumns();
    preview();
    m_columns->setFocus();
}

frmImport::~frmImport() = default;

void frmImport::addChoices(QVBoxLayout& column)
{
    auto* form = new QFormLayout;
    form->addRow(u"Файл:"_s, new QLabel(QDir::toNativeSeparators(m_source.path)));
    m_sheet->setObjectName(u"Sheet"_s);
    m_sheet->addItems(m_import->table().sheets);
    m_sheet->setCurrentText(m_import->table().sheet);
    if (m_sheet->count() > 1)
        form->addRow(labelFor(u"&Лист или таблица:"_s, m_sheet), m_sheet);
    m_group->setObjectName(u"Group"_s);
    if (m_source.book == refbooks::Book::Students) {
        for (const refbooks::Choice& group : m_import->groups())
            m_group->addItem(group.text, group.key.value_or(0));
        m_group->setPlaceholderText(u"(как в файле)"_s);
        m_group->setCurrentIndex(m_group->findData(m_source.group.value_or(0)));
        const QString group = m_parts.session.wording().isSchool() ? u"&Класс:"_s : u"&Группа:"_s;
        form->addRow(labelFor(group, m_group), m_group);
    }
    m_existing->setObjectName(u"Existing"_s);
    m_existing->addItem(u"пропустить"_s, static_cast<int>(ExistingRow::Skip));
    m_existing->addItem(u"изменить по файлу"_s, static_cast<int>(ExistingRow::Update));
    m_existing->addItem(u"добавить еще раз"_s, static_cast<int>(ExistingRow::AddAnyway));
    form->addRow(labelFor(u"&Строки, которые уже есть:"_s, m_existing), m_existing);
    m_createMissing->setObjectName(u"CreateMissing"_s);
    form->addRow(QString(), m_createMissing);
    column.addLayout(form);
    connect(m_sheet, &QComboBox::currentIndexChanged, this, &frmImport::readSheet);
    connect(m_group, &QComboBox::currentIndexChanged, this, &frmImport::preview);
    connect(m_existing, &QComboBox::currentIndexChanged, this, &frmImport::preview);
    connect(m_createMissing, &QCheckBox::toggled, this, &frmImport::preview);
}

void frmImport::addTables(QVBoxLayout& column)
{
    m_columns->setObjectName(u"Columns"_s);
    m_columns->setAccessibleName(u"Графы файла и поля справочника"_s);
    m_columns->setColumnCount(3);
    m_columns->setHorizontalHeaderLabels({u"Графа файла"_s, u"Пример"_s, u"Поле"_s});
    m_columns->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_columns->verticalHeader()->hide();
    m_columns->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_columns->setTabKeyNavigation(false);
    column.addWidget(labelFor(u"Гра&фы файла и поля справочника:"_s, m_columns));
    column.addWidget(m_columns, 2);
    m_rows->setObjectName(u"Rows"_s);
    m_rows->setAccessibleName(u"Что будет с каждой строкой"_s);
    m_rows->setModel(m_model);
    m_rows->setItemDelegate(new ReportDelegate(*m_model, m_rows));
    m_rows->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_rows->setTabKeyNavigation(false);
    m_rows->verticalHeader()->hide();
    m_rows->horizontalHeader()->setStretchLastSection(true);
    column.addWidget(labelFor(u"Что &будет с каждой строкой:"_s, m_rows));
    column.addWidget(m_rows, 3);
    m_counts->setObjectName(u"Counts"_s);
    m_counts->setWordWrap(true);
    column.addWidget(m_counts);
}

void frmImport::addButtons(QVBoxLayout& column)
{
    auto* row = new QHBoxLayout;
    row->addStretch();
    const auto add = [row](const QString& text, const QString& name) {
        auto* button = new QPushButton(text);
        button->setObjectName(name);
        row->addWidget(button);
        return button;
    };
    m_run = add(u"&Импортировать"_s, u"Run"_s);
    m_run->setDefault(true);
    m_undo = add(u"&Отменить импорт"_s, u"Undo"_s);
    m_undo->setEnabled(false);
    connect(m_run, &QPushButton::clicked, this, &frmImport::run);
    connect(m_undo, &QPushButton::clicked, this, &frmImport::undo);
    connect(add(u"Сохранить отч&ет…"_s, u"SaveReport"_s), &QPushButton::clicked, this,
            &frmImport::saveReport);
    connect(add(u"&Закрыть"_s, u"CloseWindow"_s), &QPushButton::clicked, this, &QDialog::reject);
    column.addLayout(row);
}

void frmImport::fillColumns()
{
    m_match = m_import->guess(memory().names()).columns;
    m_columns->setRowCount(static_cast<int>(m_match.fields.size()));
    for (int column = 0; column < m_columns->rowCount(); ++column)
        addColumnRow(column);
}

void frmImport::addColumnRow(int column)
{
    const TextTable& table = m_import->table();
    const QString head = cellAt(table, m_match.headRow, column);
    m_columns->setItem(column, Head, new QTableWidgetItem(head));
    m_columns->setItem(column, Example,
                       new QTableWidgetItem(cellAt(table, m_match.headRow + 1, column)));
    auto* box = new QComboBox;
    box->setAccessibleName(u"Поле для графы "_s + head);
    box->addItem(u"(не брать)"_s, kNoField);
    if (m_source.book == refbooks::Book::Students)
        box->addItem(u"Фамилия, имя и отчество"_s, kFullName);
    for (std::size_t field = 0; field < m_import->fields().size(); ++field)
        box->addItem(m_import->fields()[field].name(), static_cast<int>(field));
    box->setCurrentIndex(box->findData(m_match.fields[static_cast<std::size_t>(column)]));
    connect(box, &QComboBox::currentIndexChanged, this, &frmImport::preview);
    m_columns->setCellWidget(column, Field, box);
}

ListChoice frmImport::choice() const
{
    ListChoice choice{.columns = m_match};
    for (int column = 0; column < m_columns->rowCount(); ++column)
        choice.columns.fields[static_cast<std::size_t>(column)] =
            qobject_cast<QComboBox*>(m_columns->cellWidget(column, Field))->currentData().toInt();
    choice.existing = static_cast<ExistingRow>(m_existing->currentData().toInt());
    choice.createMissing = m_createMissing->isChecked();
    if (m_group->currentIndex() >= 0)
        choice.group = m_group->currentData().toInt();
    return choice;
}

void frmImport::readSheet()
{
    shell::runCommand(m_parts.prompt, u"Лист не был прочитан."_s, [this] {
        auto import =
            ListImport::open(m_parts.session, m_parts.prompt, m_source.book,
                             readSource(m_parts.session, m_source.path, m_sheet->currentText()));
        if (!import)
            return;
        m_import = std::move(import);
        m_undo->setEnabled(false);
        fillColumns();
        preview();
    });
}

void frmImport::preview()
{
    const QString problem = m_import->problem(choice());
    m_run->setEnabled(false);
    if (!problem.isEmpty()) {
        showNothing(problem);
        return;
    }
    shell::runCommand(m_parts.prompt, u"Список не был проверен."_s, [this] {
        std::optional<ListReport> report;
        {
            shell::WorkProgress progress(u"listProgress"_s, u"Список проверяется..."_s, this);
            report = m_import->preview(choice(), std::ref(progress));
        }
        if (report)
            showReport(*report, u"Будет"_s);
        else
            showNothing(u"Проверка прервана. Измените выбор, чтобы проверить список снова."_s);
        m_run->setEnabled(m_model->report().count(RowOutcome::Added)
                              + m_model->report().count(RowOutcome::Updated)
                          > 0);
    });
}

void frmImport::showNothing(const QString& reason)
{
    m_model->show({});
    m_counts->setText(reason);
}

// Kept for each book.
QString frmImport::memoryKey() const
{
    const std::string_view table = refbooks::bookInfo(m_source.book).table;
    return u"frmImport/columns/"_s
           + QString::fromLatin1(table.data(), static_cast<qsizetype>(table.size()));
}

ColumnMemory frmImport::memory() const
{
    return ColumnMemory::fromJson(m_parts.settings.remembered(memoryKey()));
}

void frmImport::rememberColumns()
{
    ColumnMemory memory = this->memory();
    memory.learn(m_source.book, m_import->fields(), m_import->table(), choice().columns);
    m_parts.settings.remember(memoryKey(), memory.toJson());
}

void frmImport::run()
{
    shell::runCommand(m_parts.prompt, u"Список не был импортирован."_s, [this] {
        std::optional<ListReport> report;
        {
            shell::WorkProgress progress(u"listProgress"_s, u"Идет импорт..."_s, this);
            report = m_import->run(choice(), std::ref(progress));
        }
        if (!report)
            return;
        rememberColumns();
        m_hasImported = true;
        showReport(*report, u"Выполнено"_s);
        m_run->setEnabled(false);
        m_undo->setEnabled(m_import->canUndo());
        m_parts.status.show(u"Импорт успешно завершен."_s);
    });
}

void frmImport::undo()
{
    shell::runCommand(m_parts.prompt, u"Импорт не был отменен."_s, [this] {
        if (!m_import->undo(m_parts.prompt))
            return;
        m_undo->setEnabled(false);
        m_parts.status.show(u"Импорт отменен."_s);
        preview();
    });
}

void frmImport::saveReport()
{
    shell::runCommand(m_parts.prompt, u"Отчет не записан."_s, [this] {
        const QString path = m_parts.chooser.saveDocument(QFileInfo(m_source.path).absolutePath(),
                                                          u"Отчет об импорте.txt"_s);
        if (path.isEmpty())
            return;
        const QByteArray text = m_model->report().text(m_title).toUtf8();
        sheets::writeWhole(path, sheets::Existing::Replace, [&text](const QString& draft) {
            QFile file(draft);
            if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
                throw jet::Error(jet::Fault::Io, "файл нельзя записать");
        });
        m_parts.status.show(u"Отчет записан в файл: %1"_s.arg(QDir::toNativeSeparators(path)));
    });
}

void frmImport::showReport(const ListReport& report, const QString& what)
{
    m_title = windowTitle() + u", "_s + what.toLower();
    m_counts->setText(u"%1: добавлено %2, изменено %3, пропущено %4, отклонено %5."_s.arg(what)
                          .arg(report.count(RowOutcome::Added))
                          .arg(report.count(RowOutcome::Updated))
                          .arg(report.count(RowOutcome::Skipped))
                          .arg(report.count(RowOutcome::Refused)));
    m_model->show(report);
    m_rows->resizeColumnsToContents();
}

} // namespace imports
