#include "refbooks/forms/frmsprav.h"

#include "refbooks/booklistmodel.h"
#include "refbooks/forms/bookwidths.h"
#include "refbooks/toolbar.h"
#include "refbooks/worded.h"
#include "shell/forms/paletteicon.h"
#include "shell/forms/runcommand.h"
#include "shell/forms/waitcursor.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "shell/statusline.h"
#include "ui_frmsprav.h"

#include <QCloseEvent>
#include <QMdiSubWindow>
#include <QSignalBlocker>

#include <algorithm>
#include <map>

// In the global namespace, as the macro wants; a static library's resources need the call.
static void initBookIcons()
{
    Q_INIT_RESOURCE(bookicons);
}

using namespace Qt::StringLiterals;
using shell::JournalAction;

namespace refbooks {
namespace {

const QString kNotFilled = u"Список не заполнен."_s;

QString widthsName(Book book)
{
    return u"frmSPRAV/columns/%1"_s.arg(static_cast<int>(book));
}

QString keyName(std::string_view key)
{
    return QString::fromLatin1(key.data(), static_cast<qsizetype>(key.size()));
}

// A caption in the institution's words; one that changes gets an access key that neither the
// main menu nor the other captions have.
QString wordedCaption(const shell::Wording& wording, const QString& caption)
{
    QString plain = caption;
    plain.remove(u'&');
    QString text = worded(wording, plain);
    if (text == plain)
        return caption;
    static const QString kTaken = u"фвджатеоспрн"_s;
    const auto free = std::ranges::find_if(
        text, [](QChar letter) { return letter.isLetter() && !kTaken.contains(letter.toLower()); });
    return text.insert(free - text.begin(), u'&');
}

void fillBox(QComboBox& box, const Choices& choices, int position)
{
    const QSignalBlocker quiet(box);
    box.clear();
    for (const Choice& choice : choices)
        box.addItem(choice.text);
    box.setCurrentIndex(position);
}

} // namespace

frmSPRAV::frmSPRAV(Book book, const BookListParts& parts, QWidget* parent)
    : JournalActions(parent)
    , m_book(book)
    , m_parts(parts)
    , ui(std::make_unique<Ui::frmSPRAV>())
    , m_filter(book, parts.session.wording())
{
    ui->setupUi(this);
    m_model = new BookListModel(book, parts.session.wording(), this);
    setUpList();
    setUpCommands();
    m_filter.restore(parts.settings, parts.session.database());
    listen();
    refill();
    setFocusProxy(ui->lvList);
}

frmSPRAV::~frmSPRAV() = default;

void frmSPRAV::setUpList()
{
    ui->lvList->setAccessibleName(bookTitle(m_book, m_parts.session.wording()));
    ui->lvList->setModel(m_model);
    m_widths = new BookWidths(*ui->lvList, m_model->list().columns());
    m_widths->restore(m_parts.settings.remembered(widthsName(m_book)));
    for (QWidget* control :
         {static_cast<QWidget*>(ui->lblFirst), static_cast<QWidget*>(ui->cboFirst),
          static_cast<QWidget*>(ui->lblSecond), static_cast<QWidget*>(ui->cboSecond)})
        control->setVisible(m_filter.isShown());
    ui->txtFind->installEventFilter(this);
}

void frmSPRAV::setUpCommands()
{
    initBookIcons();
    for (const ToolbarButton& button : toolbarButtons(m_book, m_parts.session.wording())) {
        if (button.key.starts_with("keySep"))
            ui->Toolbar1->addSeparator()->setObjectName(keyName(button.key));
        else
            addCommand(button.key, button.text);
    }
    if (auto* import = findChild<QAction*>(u"keyImp"_s); import && !m_parts.import)
        import->setToolTip(u"Импорт из файла пока недоступен"_s);
    ui->Toolbar1->addSeparator();
    addCommand("keyRefresh", u"Обновить"_s);
    addCommand("keyExport", u"Экспорт в .xlsx..."_s);
    addListCommand(u"actCopyRows"_s, u"Копировать строки в буфер обмена"_s, u"Ctrl+C"_s,
                   &frmSPRAV::copyRows);
    addListCommand(u"actCopyHeads"_s, u"Копировать строки с заголовками"_s, u"Ctrl+Shift+C"_s,
                   &frmSPRAV::copyRowsWithHeads);
    // The button that shows what finds no room has a picture and no text.
    if (auto* more = ui->Toolbar1->findChild<QWidget*>(u"qt_toolbar_ext_button"_s))
        more->setAccessibleName(u"Показать остальное"_s);
    auto* find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    find->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(find, &QAction::triggered, ui->txtFind, [this] {
        ui->txtFind->setFocus(Qt::ShortcutFocusReason);
        ui->txtFind->selectAll();
    });
    addAction(find);
}

// A command of the toolbar and of the context menu. Its keys work in the list only, so that
// Delete in the filter line deletes a letter; those that a line and a box have no use for
// work everywhere.
QAction* frmSPRAV::addCommand(std::string_view key, const QString& text)
{
    static const std::map<std::string_view, QStringList> kShortcuts = {
        {"keyAdd", {u"Ins"_s}},         {"keyEdit", {u"Return"_s, u"Enter"_s, u"F2"_s}},
        {"keyCopy", {u"Ctrl+D"_s}},     {"keyDel", {u"Del"_s}},
        {"keyNagrLock", {u"Ctrl+L"_s}}, {"keyExport", {u"Ctrl+E"_s}},
        {"keyRefresh", {u"F3"_s}},      {"keyImp", {u"Ctrl+I"_s}},
    };
    const QString name = keyName(key);
    auto* action = new QAction(shell::paletteIcon(u"book/"_s + name), text, this);
    action->setObjectName(name);
    QString tip = text;
    if (const auto shortcuts = kShortcuts.find(key); shortcuts != kShortcuts.end()) {
        QList<QKeySequence> keys;
        for (const QString& shortcut : shortcuts->second)
            keys << QKeySequence(shortcut);
        action->setShortcuts(keys);
        tip += u" ("_s + keys.first().toString(QKeySequence::NativeText) + u')';
    }
    if (key == "keyRefresh" || key == "keyAdd" || key == "keyImp") {
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        addAction(action);
    } else {
        action->setShortcutContext(Qt::WidgetShortcut);
    }
    action->setToolTip(tip);
    const Command command = commandOf(key);
    connect(action, &QAction::triggered, this, [this, command] { (this->*command)(); });
    ui->Toolbar1->addAction(action);
    ui->lvList->addAction(action);
    return action;
}

void frmSPRAV::addListCommand(const QString& name, const QString& text, const QString& shortcut,
                              Command command)
{
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcut(QKeySequence(shortcut));
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, [this, command] { (this->*command)(); });
    ui->lvList->addAction(action);
}

void frmSPRAV::listen()
{
    connect(ui->cboFirst, &QComboBox::currentIndexChanged, this, &frmSPRAV::firstChosen);
    connect(ui->cboSecond, &QComboBox::currentIndexChanged, this, &frmSPRAV::secondChosen);
    connect(ui->txtFind, &QLineEdit::textChanged, this, &frmSPRAV::narrow);
    connect(ui->lvList, &QTableView::doubleClicked, this, [this] {
        if (findChild<QAction*>(u"keyEdit"_s)->isEnabled())
            editRecord();
    });
    connect(ui->lvList, &BookTable::searched, this, [this](const QString& typed, bool found) {
        m_parts.status.show(found ? u"Поиск: %1"_s.arg(typed)
                                  : u"Поиск: %1 - не найдено"_s.arg(typed));
    });
    connect(ui->lvList->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmSPRAV::refreshCommands);
    const shell::Session* session = &m_parts.session;
    connect(session, &shell::Session::journalChanged, this, &frmSPRAV::leaveJournal);
    connect(session, &shell::Session::userChanged, this, &frmSPRAV::refreshCommands);
    connect(session, &shell::Session::settingsChanged, this, [this] {
        if (m_parts.session.isOpen())
            refill();
    });
}

// Keys that lead from the filter line to the rows it left.
bool frmSPRAV::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui->txtFind && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter) {
            ui->lvList->setFocus(Qt::TabFocusReason);
            return true;
        }
        if (key == Qt::Key_Escape) {
            ui->txtFind->clear();
            ui->lvList->setFocus(Qt::TabFocusReason);
            return true;
        }
    }
    return JournalActions::eventFilter(watched, event);
}

void frmSPRAV::closeEvent(QCloseEvent* event)
{
    m_filter.save(m_parts.settings);
    m_parts.settings.remember(widthsName(m_book), m_widths->save());
    JournalActions::closeEvent(event);
}

// Another file's rows have nothing to do with these.
void frmSPRAV::leaveJournal()
{
    auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget());
    frame ? frame->close() : close();
}

void frmSPRAV::showFilter()
{
    setWindowTitle(m_filter.caption());
    if (!m_filter.isShown())
        return;
    const shell::Wording& wording = m_parts.session.wording();
    static const QString kSecond[] = {u"П&реподаватель:"_s, u"Г&руппа:"_s, u"Аудито&рия:"_s};
    const bool workload = m_book == Book::Workload;
    ui->lblFirst->setText(wordedCaption(wording, workload ? u"&Показать:"_s : u"Г&руппа:"_s));
    ui->lblSecond->setText(wordedCaption(
        wording, workload ? kSecond[std::max(0, m_filter.firstPosition())] : u"&Подгруппа:"_s));
    fillBox(*ui->cboFirst, m_filter.first(), m_filter.firstPosition());
    fillBox(*ui->cboSecond, m_filter.second(), m_filter.secondPosition());
    (workload ? ui->cboSecond : ui->cboFirst)->setPlaceholderText(u"Выберите из списка"_s);
}

void frmSPRAV::firstChosen(int position)
{
    shell::runCommand(m_parts.prompt, kNotFilled,
                      [&] { m_filter.chooseFirst(position, m_parts.session.database()); });
    refill();
}

void frmSPRAV::secondChosen(int position)
{
    m_filter.chooseSecond(position);
    refill();
}

void frmSPRAV::narrow(const QString& line)
{
    const auto key = currentKey();
    m_model->narrow(line);
    goToKey(key, 0);
    showCount();
    refreshCommands();
}

void frmSPRAV::refill(std::optional<std::int64_t> key)
{
    const int row = ui->lvList->currentIndex().row();
    if (!key)
        key = currentKey();
    shell::runCommand(m_parts.prompt, kNotFilled, [this] {
        const shell::WaitCursor wait; // a list of 150,000 lessons takes half a second
        jet::Database& database = m_parts.session.database();
        m_filter.fill(database);
        m_model->load(database, m_filter.listFilter());
    });
    showFilter();
    goToKey(key, row);
    showCount();
    refreshCommands();
}

void frmSPRAV::goToKey(std::optional<std::int64_t> key, int otherwise)
{
    const auto row = key ? m_model->list().rowOfKey(*key) : std::nullopt;
    ui->lvList->goToRow(row.value_or(std::min(std::max(otherwise, 0), m_model->rowCount() - 1)));
}

void frmSPRAV::showCount()
{
    const BookList& list = m_model->list();
    QString text = u"Строк: %L1"_s.arg(list.rowCount());
    if (list.rowCount() != list.loadedCount())
        text += u" из %L1"_s.arg(list.loadedCount());
    if (const int selected = ui->lvList->selectedRowCount(); selected > 1)
        text += u"    Выделено: %L1"_s.arg(selected);
    if (const QString leftOut = list.leftOut(); !leftOut.isEmpty())
        text += u"    "_s + leftOut;
    ui->lblCount->setText(text);
}

void frmSPRAV::refreshCommands()
{
    showCount();
    if (!m_parts.session.isOpen())
        return;
    // Who works on a file opened for reading may do what a role may that changes nothing.
    const bool readOnly = m_parts.session.database().readOnly();
    const shell::Role role = readOnly ? shell::Role::User : m_parts.session.user().role;
    const int selected = ui->lvList->selectedRowCount();
    for (QAction* action : ui->Toolbar1->actions()) {
        const std::string key = action->objectName().toStdString();
        if (!key.starts_with("key") || key == "keyRefresh" || key == "keyExport")
            continue;
        const bool linked =
            (key != "keyImp" || m_parts.import) && (key != "keyJur" || m_parts.openAttendance);
        action->setEnabled(linked && refbooks::isEnabled(key, m_book, role, selected));
    }
    for (const QString& name : {u"actCopyRows"_s, u"actCopyHeads"_s})
        findChild<QAction*>(name)->setEnabled(selected > 0);
}

bool frmSPRAV::available(JournalAction action) const
{
    return action == JournalAction::Refresh;
}

void frmSPRAV::run(JournalAction action)
{
    if (action == JournalAction::Refresh)
        refresh();
}

} // namespace refbooks
