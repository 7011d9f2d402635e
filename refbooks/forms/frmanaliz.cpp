#include "refbooks/forms/frmanaliz.h"

#include "refbooks/analysismodel.h"
#include "refbooks/forms/datebox.h"
#include "refbooks/typedvalue.h"
#include "refbooks/worded.h"
#include "shell/session.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include <exception>
#include <utility>

using namespace Qt::StringLiterals;

namespace refbooks {
namespace {

// Sums, and what was held beyond the plan, stand out by weight.
class AnalysisDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const bool isTotal = index.data(AnalysisModel::TotalRole).toBool();
        if (isTotal || index.data(AnalysisModel::OverRole).toBool())
            option->font.setBold(true);
    }
};

QString line(const AnalysisModel& model, int row)
{
    QStringList cells;
    for (int column = 0; column < model.columnCount(); ++column)
        cells << (row < 0 ? model.headerData(column, Qt::Horizontal)
                          : model.index(row, column).data())
                     .toString();
    return cells.join(u'\t') + u'\n';
}

} // namespace

frmAnaliz::frmAnaliz(shell::Session& session, std::vector<std::int64_t> keys, Export write,
                     QWidget* parent)
    : QDialog(parent)
    , m_session(session)
    , m_keys(std::move(keys))
    , m_write(std::move(write))
    , m_model(new AnalysisModel(session.wording(), this))
    , m_table(new QTableView)
    , m_through(new DateBox(session.workingDate()))
    , m_note(new QLabel)
{
    setObjectName(u"frmAnaliz"_s);
    setWindowTitle(worded(session.wording(), u"Сравнить план и проведенные часы"_s));
    m_through->setText(dateText(session.workingDate()));
    setUpTable();
    m_note->setObjectName(u"lblNote"_s);
    m_note->setWordWrap(true);
    auto* column = new QVBoxLayout(this);
    column->addLayout(dateRow());
    column->addWidget(m_table);
    column->addWidget(m_note);
    column->addLayout(buttonRow());
    count(session.workingDate());
    m_table->resizeColumnsToContents();
    m_table->setCurrentIndex(m_model->index(0, 0));
    m_table->setFocus();
    resize(fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 28);
}

frmAnaliz::~frmAnaliz() = default;

void frmAnaliz::setUpTable()
{
    m_table->setObjectName(u"tblHours"_s);
    m_table->setAccessibleName(u"Плановые и проведенные часы"_s);
    m_table->setModel(m_model);
    m_table->setItemDelegate(new AnalysisDelegate(m_table));
    m_table->setAlternatingRowColors(true);
    m_table->setTabKeyNavigation(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setSectionResizeMode(AnalysisModel::Discipline,
                                                      QHeaderView::Stretch);
    auto* copy = new QShortcut(QKeySequence::Copy, m_table);
    copy->setContext(Qt::WidgetShortcut);
    connect(copy, &QShortcut::activated, this, &frmAnaliz::copyTable);
}

QLayout* frmAnaliz::dateRow()
{
    m_through->setObjectName(u"DT0"_s);
    m_through->setMaximumWidth(fontMetrics().averageCharWidth() * 24);
    auto* label = new QLabel(u"&По состоянию на"_s);
    label->setBuddy(m_through);
    connect(m_through, &QLineEdit::editingFinished, this, &frmAnaliz::takeDate);
    connect(m_through, &DateBox::picked, this, &frmAnaliz::takeDate);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_through);
    row->addWidget(new QLabel(u"(без даты — за все время)"_s));
    row->addStretch();
    return row;
}

QLayout* frmAnaliz::buttonRow()
{
    auto* copy = new QPushButton(u"&Копировать"_s);
    copy->setObjectName(u"cmdCopy"_s);
    copy->setAutoDefault(false); // Enter in the date line counts
    connect(copy, &QPushButton::clicked, this, &frmAnaliz::copyTable);
    auto* toFile = new QPushButton(u"&В файл..."_s);
    toFile->setObjectName(u"cmdExport"_s);
    toFile->setAutoDefault(false);
    toFile->setEnabled(m_write != nullptr);
    connect(toFile, &QPushButton::clicked, this, &frmAnaliz::exportTable);
    auto* close = new QPushButton(u"Закрыть"_s);
    close->setObjectName(u"cmdCancel"_s);
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(copy);
    row->addWidget(toFile);
    row->addWidget(close);
    return row;
}

void frmAnaliz::count(QDate through)
{
    m_model->show(workloadHours(m_session.database(), m_keys, through, m_session.hoursPerLesson()));
    const QString until =
        through.isValid() ? u"по %1 включительно"_s.arg(dateText(through)) : u"за все время"_s;
    const QString how =
        worded(m_session.wording(), u"Часы подсчитаны %1. Продолжительность занятия, ч: %2."_s)
            .arg(until, QString::number(m_session.hoursPerLesson()));
    m_note->setText(m_model->totalText() + u'\n' + how);
}

void frmAnaliz::takeDate()
{
    const auto through = typedDate(m_through->text());
    if (!through) {
        m_note->setText(u"Введите дату в виде 31.12.2026. Часы показаны без изменения."_s);
        return;
    }
    m_through->setText(dateText(*through));
    try {
        count(*through);
    } catch (const std::exception& error) {
        m_note->setText(u"Часы не подсчитаны. Ошибка: "_s + QString::fromUtf8(error.what()));
    }
}

void frmAnaliz::exportTable()
{
    sheets::Table table;
    table.title = windowTitle();
    table.rows = m_model->rowCount();
    table.text = [this](int row, int column) {
        return m_model->index(row, column).data().toString();
    };
    for (int column = 0; column < m_model->columnCount(); ++column) {
        const bool isNumber = column >= AnalysisModel::Planned;
        table.columns.push_back({m_model->headerData(column, Qt::Horizontal).toString(),
                                 isNumber ? sheets::Kind::Number : sheets::Kind::Text,
                                 isNumber ? sheets::Alignment::Right : sheets::Alignment::Left});
    }
    m_write(table);
}

void frmAnaliz::copyTable()
{
    QString table = line(*m_model, -1);
    for (int row = 0; row < m_model->rowCount(); ++row)
        table += line(*m_model, row);
    QGuiApplication::clipboard()->setText(table);
}

} // namespace refbooks
