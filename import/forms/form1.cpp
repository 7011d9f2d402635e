#include "import/forms/form1.h"

#include "import/forms/labelfor.h"
#include "import/importtexts.h"
#include "import/previewmodel.h"
#include "import/worded.h"
#include "shell/forms/runcommand.h"
#include "shell/forms/waitcursor.h"
#include "shell/forms/workprogress.h"
#include "shell/session.h"
#include "shell/statusline.h"

#include <QDateEdit>
#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTableWidget>
#include <QVBoxLayout>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

// Lessons that will not be imported stand in italics; their tool tip says why.
class PreviewDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.data(PreviewModel::MissingRole).toBool())
            option->font.setItalic(true);
    }
};

QDate today(const shell::Session& session)
{
    const QDate working = session.workingDate();
    return working.isValid() ? working : QDate::currentDate();
}

} // namespace

Form1::Form1(const ImportParts& parts, const QString& path, std::unique_ptr<Timetable> timetable,
             QWidget* parent)
    : QDialog(parent)
    , m_parts(parts)
    , m_timetable(std::move(timetable))
    , m_period(monthOf(today(parts.session)))
    , m_model(new PreviewModel(*m_timetable, parts.session.wording(), this))
    , m_preview(new QTableView)
    , m_summary(new QTableWidget)
    , m_summaryCaption(new QLabel)
    , m_note(new QLabel)
    , m_statusText(new QLabel)
{
    setObjectName(u"Form1"_s);
    setWindowTitle(worded(parts.session.wording(), u"Импорт занятий"_s));
    setUpPreview();
    setUpSummary();
    auto* column = new QVBoxLayout(this);
    column->addLayout(choiceRows(path));
    column->addLayout(listRow(), 1);
    column->addLayout(buttonRow());
    resize(fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 32);
    refresh();
    m_from->setFocus();
}

// The model needs the timetable until it is gone.
Form1::~Form1()
{
    delete m_preview;
    delete m_model;
}

void Form1::setUpPreview()
{
    m_preview->setObjectName(u"HF1"_s);
    m_preview->setAccessibleName(
        worded(m_parts.session.wording(), u"Занятия за период в базе данных расписания"_s));
    m_preview->setModel(m_model);
    m_preview->setItemDelegate(new PreviewDelegate(m_preview));
    m_preview->setAlternatingRowColors(true);
    m_preview->setTabKeyNavigation(false);
    m_preview->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_preview->verticalHeader()->hide();
    m_preview->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    m_preview->horizontalHeader()->setSectionResizeMode(PreviewModel::Discipline,
                                                        QHeaderView::Stretch);
}

void Form1::setUpSummary()
{
    m_summary->setObjectName(u"tblSummary"_s);
    m_summary->setAccessibleName(u"Сколько строк добавляется и изменяется"_s);
    m_summary->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_summary->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_summary->setTabKeyNavigation(false);
    m_summary->setAlternatingRowColors(true);
    m_summary->verticalHeader()->hide();
    m_summary->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    m_summary->setColumnCount(4);
    m_summary->setHorizontalHeaderLabels(
        {u"Таблица"_s, u"Добавлено"_s, u"Изменено"_s, u"Без изменений"_s});
    m_summary->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_note->setObjectName(u"lblNote"_s);
    m_note->setWordWrap(true);
}

QDateEdit* Form1::dateBox(const QString& name, QDate date)
{
    auto* box = new QDateEdit(date);
    box->setObjectName(name);
    box->setCalendarPopup(true);
    box->setDisplayFormat(u"dd.MM.yyyy"_s);
    box->setKeyboardTracking(false); // what is half typed is no date
    box->installEventFilter(this);
    connect(box, &QDateEdit::dateChanged, this, &Form1::takePeriod);
    return box;
}

QLayout* Form1::choiceRows(const QString& path)
{
    auto* file = new QLineEdit(QDir::toNativeSeparators(path));
    file->setObjectName(u"txtFile"_s);
    file->setReadOnly(true);
    m_from = dateBox(u"DTPicker1"_s, m_period.from);
    m_to = dateBox(u"DTPicker2"_s, m_period.to);
    auto* dates = new QHBoxLayout;
    dates->addWidget(labelFor(u"Период &с"_s, m_from));
    dates->addWidget(m_from);
    dates->addWidget(labelFor(u"&по"_s, m_to));
    dates->addWidget(m_to);
    dates->addSpacing(fontMetrics().averageCharWidth() * 3);
    dates->addWidget(labelFor(u"&Файл:"_s, file));
    dates->addWidget(file, 1);
    return dates;
}

QLayout* Form1::listRow()
{
    m_summaryCaption->setObjectName(u"lblSummary"_s);
    m_summaryCaption->setBuddy(m_summary);
    auto* right = new QVBoxLayout;
    right->addWidget(m_summaryCaption);
    right->addWidget(m_summary);
    right->addWidget(m_note);
    right->addStretch(1);
    auto* row = new QHBoxLayout;
    row->addWidget(m_preview, 1);
    row->addLayout(right);
    return row;
}

QLayout* Form1::buttonRow()
{
    m_statusText->setObjectName(u"lblStatus"_s);
    m_ok = new QPushButton(u"ОК"_s);
    m_ok->setObjectName(u"cmdOK"_s);
    m_ok->setDefault(true);
    connect(m_ok, &QPushButton::clicked, this, &Form1::runImport);
    m_cancel = new QPushButton(u"Отмена"_s);
    m_cancel->setObjectName(u"cmdCancel"_s);
    m_cancel->setAutoDefault(false); // the focus alone makes no button the default
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->addWidget(m_statusText, 1);
    row->addWidget(m_ok);
    row->addWidget(m_cancel);
    return row;
}

// Enter in a date takes the date; it does not start the import.
bool Form1::eventFilter(QObject* watched, QEvent* event)
{
    auto* box = qobject_cast<QDateEdit*>(watched);
    if (!box || event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return QDialog::eventFilter(watched, event);
    box->interpretText();
    return true;
}

void Form1::takePeriod()
{
    const Period chosen{m_from->date(), m_to->date()};
    if (chosen == m_period)
        return;
    m_period = chosen;
    refresh();
    if (tooLong(m_period))
        m_parts.prompt.exclamation(problem(m_period));
}

void Form1::refresh()
{
    m_choice.reset();
    m_model->show(nullptr);
    clearSummary();
    if (const QString why = problem(m_period); !why.isEmpty()) {
        m_statusText->setText(why);
    } else {
        m_statusText->setText(u"Идет обновление списков..."_s);
        m_statusText->repaint();
        const bool done = shell::runCommand(m_parts.prompt, u"Списки не обновлены."_s, [this] {
            const shell::WaitCursor cursor;
            auto choice = std::make_shared<LessonChoice>(chooseLessons(*m_timetable, m_period));
            const ImportCounts counts =
                tryImport(*m_timetable, m_period, *choice, m_parts.session.database());
            m_choice = std::move(choice);
            m_model->show(m_choice);
            showSummary(counts, u"Будет &импортировано:"_s);
        });
        m_statusText->setText(done ? u"Готово."_s : u"Списки не обновлены."_s);
    }
    for (const int column :
         {PreviewModel::Date, PreviewModel::Teacher, PreviewModel::Group, PreviewModel::Subgroup})
        m_preview->resizeColumnToContents(column);
    m_ok->setEnabled(m_choice != nullptr);
    m_ok->setDefault(true);
}

void Form1::clearSummary()
{
    m_summary->setRowCount(0);
    m_summaryCaption->setText(u"Будет &импортировано:"_s);
    m_note->clear();
}

void Form1::showSummary(const ImportCounts& counts, const QString& caption)
{
    const shell::Wording& wording = m_parts.session.wording();
    const auto lines = summary(counts, wording);
    m_summaryCaption->setText(caption);
    m_summary->setRowCount(static_cast<int>(lines.size()));
    for (int row = 0; row < lines.size(); ++row) {
        const RowCounts& rows = lines[row].rows;
        m_summary->setItem(row, 0, new QTableWidgetItem(lines[row].table));
        int column = 1;
        for (const std::int64_t count : {rows.added, rows.updated, rows.unchanged}) {
            auto* item = new QTableWidgetItem(QString::number(count));
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            m_summary->setItem(row, column++, item);
        }
    }
    int width = 2 * m_summary->frameWidth();
    for (int column = 0; column < m_summary->columnCount(); ++column)
        width += m_summary->horizontalHeader()->sectionSize(column);
    m_summary->setFixedWidth(width);
    m_summary->setFixedHeight(m_summary->horizontalHeader()->sizeHint().height()
                              + m_summary->verticalHeader()->length()
                              + 2 * m_summary->frameWidth());
    QStringList notes{skippedText(*m_choice, wording), shortenedText(counts)};
    notes.removeAll(QString());
    m_note->setText(notes.join(u'\n'));
}

void Form1::runImport()
{
    bool hasBegun = false;
    std::optional<ImportCounts> counts;
    const bool done =
        shell::runCommand(m_parts.prompt, u"Импорт не выполнен, журнал не изменен."_s, [&] {
            hasBegun = mayBegin(m_parts.session, m_parts.prompt, *m_timetable, m_period, *m_choice);
            if (!hasBegun)
                return;
            m_statusText->setText(u"Идет импорт..."_s);
            m_statusText->repaint();
            shell::WorkProgress progress(u"importProgress"_s, m_statusText->text(), this);
            counts = importLessons(*m_timetable, m_period, *m_choice, m_parts.session.database(),
                                   std::ref(progress));
        });
    if (counts)
        finish(*counts);
    else if (!done || hasBegun)
        m_statusText->setText(done ? u"Импорт отменен, журнал не изменен."_s
                                   : u"Импорт не выполнен, журнал не изменен."_s);
}

void Form1::finish(const ImportCounts& counts)
{
    m_hasImported = true;
    m_cancel->setText(u"Закрыть"_s);
    m_cancel->setDefault(true); // Enter does not import twice
    m_cancel->setFocus();
    showSummary(counts, u"&Импортировано:"_s);
    m_parts.prompt.information(doneText());
    const QString text = doneText(counts, m_parts.session.wording());
    m_statusText->setText(text);
    m_parts.status.show(text);
}

} // namespace imports
