#include "reports/forms/lview.h"

#include "journals/forms/gridcells.h"
#include "journals/forms/journaldelegate.h"
#include "journals/studyperiod.h"
#include "reports/forms/chartfiles.h"
#include "reports/rankingmodel.h"
#include "reports/rankingpaper.h"
#include "reports/rankingtexts.h"
#include "reports/worded.h"
#include "sheets/writetable.h"
#include "shell/forms/filechooser.h"
#include "shell/forms/runcommand.h"
#include "shell/forms/waitcursor.h"
#include "shell/prompt.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/statusline.h"
#include "ui_lview.h"

#include <QAction>
#include <QChart>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using shell::JournalAction;
using shell::Setting;

constexpr int kNameColumn = 0;
constexpr int kListShare = 3000, kChartShare = 2000; // of the width; scaled to the window
const QString kDateFormat = u"yyyy-MM-dd"_s;         // of the settings

RankingChart chartOf(const RankingModel& model)
{
    RankingChart chart{model.head(model.drawn()), {}, isRate(model.drawn())};
    for (const RankingRow& row : model.rows())
        chart.bars.push_back({row.name, row.values[model.drawn()]});
    return chart;
}

// Room for every word of the head.
int widthOf(const RankingModel& model, int column, const QFontMetrics& metrics)
{
    constexpr int kNameLetters = 24, kNumberLetters = 7, kMargins = 16;
    int width =
        metrics.averageCharWidth() * (column == kNameColumn ? kNameLetters : kNumberLetters);
    for (const QString& word : model.head(itemOfColumn(column)).split(u' '))
        width = std::max(width, metrics.horizontalAdvance(word) + kMargins);
    return width;
}

QDate remembered(const shell::Settings& settings, Setting setting, QDate otherwise)
{
    const QDate date = QDate::fromString(settings.text(setting), kDateFormat);
    return date.isValid() ? date : otherwise;
}

} // namespace

LView::LView(const DocumentParts& parts, QWidget* parent)
    : JournalActions(parent)
    , m_parts(parts)
    , m_files(parts)
    , ui(std::make_unique<Ui::LView>())
{
    ui->setupUi(this);
    const shell::Wording& wording = parts.session.wording();
    setWindowTitle(worded(wording, u"Отчет по специальностям"_s));
    for (QWidget* widget :
         std::initializer_list<QWidget*>{ui->Lv1, ui->LV2, ui->MSChart1, ui->MSChart2})
        widget->setAccessibleName(worded(wording, widget->accessibleName()));
    m_specialities = {new RankingModel(RankingLevel::Specialities, wording, this), ui->Lv1,
                      ui->MSChart2, std::nullopt};
    m_groups = {new RankingModel(RankingLevel::Groups, wording, this), ui->LV2, ui->MSChart1,
                std::nullopt};
    setUpHalf(m_specialities);
    setUpHalf(m_groups);
    for (QSplitter* splitter : {ui->specialities, ui->groups})
        splitter->setSizes({kListShare, kChartShare});
    setUpButtons();
    restoreChoice();
    showState();
    setFocusProxy(ui->DTPicker1);
}

LView::~LView() = default;

void LView::setUpHalf(Half& half)
{
    half.table->setFrozenColumns(kNameColumn + 1);
    half.table->setModel(half.model);
    half.table->setDelegate(new journals::JournalDelegate(this));
    half.table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    half.view->setRenderHint(QPainter::Antialiasing);
    for (int column = 0; column < half.model->columnCount(); ++column)
        half.table->setColumnWidth(column, widthOf(*half.model, column, fontMetrics()));
    // The names have a header of their own, which stays in place.
    for (const QHeaderView* header : half.table->findChildren<QHeaderView*>())
        if (header->orientation() == Qt::Horizontal)
            connect(header, &QHeaderView::sectionClicked, this,
                    [this, &half](int column) { drawColumn(half, column); });
    setUpMenu(half);
    draw(half);
}

void LView::setUpMenu(Half& half)
{
    auto* table = half.table;
    table->setContextMenuPolicy(Qt::ActionsContextMenu);
    const auto add = [&](const QString& text, const QKeySequence& keys, auto body) {
        auto* action = new QAction(text, table);
        action->setShortcut(keys);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, body);
        table->addAction(action);
    };
    const auto column = [table] { return table->currentIndex().column(); };
    add(u"Показать графу на диаграмме"_s, Qt::Key_Space,
        [this, &half, column] { drawColumn(half, column()); });
    add(u"Сортировать по возрастанию"_s, {},
        [this, &half, column] { sortBy(half, column(), Qt::AscendingOrder); });
    add(u"Сортировать по убыванию"_s, {},
        [this, &half, column] { sortBy(half, column(), Qt::DescendingOrder); });
    add(u"Исходный порядок"_s, {}, [this, &half] { sortBy(half, -1, Qt::AscendingOrder); });
    add(u"Копировать"_s, QKeySequence::Copy, [table] { journals::copyCells(*table); });
}

void LView::setUpButtons()
{
    connect(ui->cmdCount, &QPushButton::clicked, this, &LView::compute);
    connect(ui->cmdExport, &QPushButton::clicked, this, &LView::exportLists);
    auto* print = new QMenu(ui->cmdPrint);
    print->addAction(u"&Списки..."_s, this, &LView::printLists);
    print->addAction(u"&Диаграммы..."_s, this, &LView::printBothCharts);
    ui->cmdPrint->setMenu(print);
    auto* picture = new QMenu(ui->cmdPicture);
    for (const Half* half : {&m_specialities, &m_groups})
        for (const QString& suffix : {u"png"_s, u"svg"_s})
            picture->addAction(u"%1, %2..."_s.arg(half->view->accessibleName(), suffix.toUpper()),
                               this, [this, half, suffix] { savePicture(*half, suffix); });
    ui->cmdPicture->setMenu(picture);
    for (const QDateEdit* date : {ui->DTPicker1, ui->DTPicker2})
        connect(date, &QDateEdit::dateChanged, this, &LView::showState);
    connect(ui->optr_0, &QRadioButton::toggled, this, &LView::showState);
    connect(ui->Lv1->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &LView::showGroups);
}

void LView::restoreChoice()
{
    const shell::Settings& settings = m_parts.settings;
    const journals::Period year = journals::studyPeriod(m_parts.session.settings());
    ui->DTPicker1->setDate(remembered(settings, Setting::RankingBegin, year.from));
    ui->DTPicker2->setDate(remembered(settings, Setting::RankingEnd, year.to));
    (settings.number(Setting::RankingOption) == 1 ? ui->optr_1 : ui->optr_0)->setChecked(true);
}

void LView::rememberChoice()
{
    shell::Settings& settings = m_parts.settings;
    settings.setText(Setting::RankingBegin, ui->DTPicker1->date().toString(kDateFormat));
    settings.setText(Setting::RankingEnd, ui->DTPicker2->date().toString(kDateFormat));
    settings.setNumber(Setting::RankingOption, ui->optr_1->isChecked() ? 1 : 0);
}

RankingRequest LView::request() const
{
    return {ui->DTPicker1->date(), ui->DTPicker2->date(),
            ui->optr_1->isChecked() ? RankingGrades::Monthly : RankingGrades::Final};
}

void LView::compute()
{
    const RankingRequest wanted = request();
    if (wanted.begin > wanted.end) {
        m_parts.prompt.exclamation(u"Начало периода не должно быть позже его конца."_s);
        ui->DTPicker1->setFocus();
        return;
    }
    rememberChoice();
    const auto kept = m_speciality;
    shell::runCommand(m_parts.prompt, u"Анализ не выполнен."_s, [&] {
        const shell::WaitCursor cursor;
        auto ranking = std::make_unique<const Ranking>(m_parts.session.database(), wanted);
        auto rows = ranking->specialities();
        m_ranking = std::move(ranking);
        m_shown = wanted;
        m_specialities.model->setRows(std::move(rows));
        m_speciality.reset();
        const auto row = kept ? m_specialities.model->rowOf(*kept) : std::nullopt;
        ui->Lv1->setCurrentIndex(m_specialities.model->index(row.value_or(0), kNameColumn));
        m_parts.status.show(worded(m_parts.session.wording(), u"Количество специальностей: %1"_s)
                                .arg(m_specialities.model->rowCount()));
    });
    draw(m_specialities);
    if (m_specialities.model->rows().empty())
        showGroups(); // nothing is selected any more
    showState();
    ui->Lv1->setFocus();
}

std::optional<int> LView::currentSpeciality() const
{
    const int row = ui->Lv1->currentIndex().row();
    return row < 0 ? std::nullopt : std::optional(row);
}

void LView::showGroups()
{
    const auto row = currentSpeciality();
    const auto key =
        row ? std::optional(m_specialities.model->rows()[static_cast<std::size_t>(*row)].key)
            : std::nullopt;
    if (key && key == m_speciality)
        return; // after sorting
    m_speciality = key;
    m_groups.model->setRows(key ? m_ranking->groups(*key) : std::vector<RankingRow>());
    ui->LV2->setCurrentIndex(m_groups.model->index(0, kNameColumn));
    draw(m_groups);
    showState();
}

void LView::draw(Half& half)
{
    half.chart = half.model->rows().empty() ? std::nullopt : std::optional(chartOf(*half.model));
    const std::unique_ptr<QChart> old(half.view->chart());
    half.view->setChart(half.chart ? drawnChart(*half.chart, palette()) : new QChart);
    half.view->setMinimumHeight(half.chart ? leastHeight(*half.chart) : 0);
    setColors(*half.view->chart(), palette());
    half.table->setDataArea(kNameColumn, half.model->columnCount(), half.model->rowCount());
    half.view->setAccessibleDescription(half.chart ? half.chart->title : QString());
}

void LView::drawColumn(Half& half, int column)
{
    if (column < 0)
        return;
    half.model->setDrawn(itemOfColumn(column));
    draw(half);
    m_parts.status.show(u"На диаграмме: %1"_s.arg(half.model->head(half.model->drawn())));
}

void LView::sortBy(Half& half, int column, Qt::SortOrder order)
{
    const auto& rows = half.model->rows();
    const QModelIndex current = half.table->currentIndex();
    if (!current.isValid())
        return;
    const std::int64_t key = rows[static_cast<std::size_t>(current.row())].key;
    half.model->sort(column, order);
    half.table->setCurrentIndex(half.model->index(*half.model->rowOf(key), current.column()));
    draw(half);
}

// What the lists show, and how to bring them up to date.
void LView::showState()
{
    const shell::Wording& wording = m_parts.session.wording();
    const auto row = currentSpeciality();
    QString text = worded(wording, u"Выберите период и вид оценок и нажмите \"Рассчитать\": будут "
                                   "показаны специальности, а для выделенной - ее группы."_s);
    if (m_shown) {
        text = u"Показано: "_s + rankingPeriodText(*m_shown) + u'.';
        if (row && m_speciality)
            text += worded(wording, u" Группы специальности: "_s)
                    + m_specialities.model->rows()[static_cast<std::size_t>(*row)].name + u'.';
        if (request() != *m_shown)
            text += u" Выбраны другой период или оценки: нажмите \"Рассчитать\"."_s;
    }
    ui->lblShown->setText(text);
    for (QPushButton* button : {ui->cmdExport, ui->cmdPrint, ui->cmdPicture})
        button->setEnabled(m_specialities.chart.has_value());
    emit availabilityChanged();
}

bool LView::available(JournalAction action) const
{
    return action == JournalAction::Refresh
           || (action == JournalAction::Print && m_specialities.chart.has_value());
}

void LView::run(JournalAction action)
{
    if (action == JournalAction::Refresh)
        compute();
    else if (action == JournalAction::Print)
        printLists();
}

void LView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        for (const Half* half : {&m_specialities, &m_groups})
            if (half->view)
                setColors(*half->view->chart(), palette());
    JournalActions::changeEvent(event);
}

// Enter in a date or an option; the lists take theirs.
void LView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return JournalActions::keyPressEvent(event);
    if (auto* button = qobject_cast<QPushButton*>(focusWidget()))
        button->click();
    else
        compute();
}

papers::Document LView::document() const
{
    RankingShown shown{*m_shown, m_specialities.model->rows(), {}, m_groups.model->rows()};
    if (const auto row = currentSpeciality())
        shown.speciality = m_specialities.model->rows()[static_cast<std::size_t>(*row)].name;
    return rankingDocument(shown, m_parts.session.settings(), m_parts.session.wording());
}

void LView::exportLists()
{
    m_files.writeWorkbook(document(), [](bool named) {
        return named ? u"Отчет составлен, но не сохранен в файле."_s
                     : u"Отчет составлен, но не сохранен."_s;
    });
}

void LView::printLists()
{
    shell::runCommand(m_parts.prompt, u"Отчет не напечатан."_s,
                      [this] { m_files.print(document(), this); });
}

void LView::printBothCharts()
{
    shell::runCommand(m_parts.prompt, u"Диаграммы не напечатаны."_s, [this] {
        std::vector<RankingChart> charts;
        for (const Half* half : {&m_specialities, &m_groups})
            if (half->chart)
                charts.push_back(*half->chart);
        printCharts(charts, windowTitle(), rankingPeriodText(*m_shown), this);
    });
}

void LView::savePicture(const Half& half, const QString& suffix)
{
    shell::runCommand(m_parts.prompt, u"Рисунок не сохранен."_s, [&] {
        if (!half.chart)
            return;
        const QString name =
            QFileInfo(sheets::fileName(half.view->accessibleName() + u", "_s + half.chart->title))
                .completeBaseName();
        const QString path =
            m_parts.chooser.saveDocument(m_parts.documentsFolder(), name + u'.' + suffix);
        if (path.isEmpty())
            return;
        writePicture(*half.chart, path);
        m_parts.status.show(u"Рисунок сохранен в файле: %1"_s.arg(QDir::toNativeSeparators(path)));
    });
}

} // namespace reports
