#include "shell/forms/frmhelp.h"

#include "shell/forms/manualview.h"
#include "ui_frmhelp.h"

#include <QAction>
#include <QScrollBar>

#include <utility>

using namespace Qt::StringLiterals;

namespace shell {

frmHelp::frmHelp(QWidget* owner)
    : QWidget(owner, Qt::Window)
    , ui(std::make_unique<Ui::frmHelp>())
{
    ui->setupUi(this);
    m_manual = new ManualView(ui->splitter);
    m_manual->setObjectName(u"txtManual"_s);
    m_manual->setAccessibleName(u"Текст руководства"_s);
    ui->splitter->setStretchFactor(1, 1);
    ui->splitter->setSizes({260, 700});
    fillContents();
    addKeys();
    connect(m_manual, &QTextBrowser::backwardAvailable, ui->cmdBack, &QWidget::setEnabled);
    connect(m_manual, &QTextBrowser::forwardAvailable, ui->cmdForward, &QWidget::setEnabled);
    connect(m_manual->verticalScrollBar(), &QScrollBar::valueChanged, this, &frmHelp::showPlace);
    connect(m_manual, &QTextBrowser::sourceChanged, this, &frmHelp::showPlace);
    connect(ui->cmdBack, &QToolButton::clicked, m_manual, &QTextBrowser::backward);
    connect(ui->cmdForward, &QToolButton::clicked, m_manual, &QTextBrowser::forward);
    connect(ui->cmdNext, &QToolButton::clicked, this, [this] { search(false); });
    connect(ui->cmdPrevious, &QToolButton::clicked, this, [this] { search(true); });
    connect(ui->txtSearch, &QLineEdit::returnPressed, this, [this] { search(false); });
    connect(ui->tvContents, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem* item) {
        m_manual->goTo(item->data(0, Qt::UserRole).toString());
    });
    connect(ui->tvContents, &QTreeWidget::itemClicked, this, [this](const QTreeWidgetItem* item) {
        m_manual->goTo(item->data(0, Qt::UserRole).toString());
    });
    m_manual->setFocus();
}

frmHelp::~frmHelp() = default;

void frmHelp::open(const QString& anchor)
{
    if (isMinimized()) {
        showNormal();
    }
    show();
    raise();
    activateWindow();
    if (!anchor.isEmpty()) {
        m_manual->goTo(anchor);
    }
}

void frmHelp::fillContents()
{
    QTreeWidgetItem* chapter = nullptr;
    for (const ManualView::Heading& heading : m_manual->headings()) {
        if (heading.level == 1) {
            continue;
        }
        QTreeWidgetItem* item = heading.level == 2 || !chapter ? new QTreeWidgetItem(ui->tvContents)
                                                               : new QTreeWidgetItem(chapter);
        item->setText(0, heading.title);
        item->setToolTip(0, heading.title);
        item->setData(0, Qt::UserRole, heading.anchor);
        if (heading.level == 2) {
            chapter = item;
        }
    }
    ui->tvContents->expandAll();
}

void frmHelp::addKeys()
{
    const auto add = [this](const QList<QKeySequence>& keys, const QString& text, auto body) {
        auto* action = new QAction(text, this);
        action->setShortcuts(keys);
        connect(action, &QAction::triggered, this, body);
        addAction(action);
    };
    add({QKeySequence::Find}, u"Найти"_s, [this] {
        ui->txtSearch->setFocus();
        ui->txtSearch->selectAll();
    });
    add({Qt::Key_F3}, u"Найти ниже"_s, [this] { search(false); });
    add({Qt::SHIFT | Qt::Key_F3}, u"Найти выше"_s, [this] { search(true); });
    add({Qt::ALT | Qt::Key_Left}, u"Назад"_s, [this] { m_manual->backward(); });
    add({Qt::ALT | Qt::Key_Right}, u"Вперед"_s, [this] { m_manual->forward(); });
    add({Qt::Key_Escape, QKeySequence::Close}, u"Закрыть"_s, [this] { close(); });
}

void frmHelp::search(bool backwards)
{
    const QString text = ui->txtSearch->text();
    const bool found = m_manual->findText(text, backwards);
    ui->lblFound->setText(found || text.isEmpty() ? QString() : u"Не найдено."_s);
}

// The contents follow the text.
void frmHelp::showPlace()
{
    const QString anchor = m_manual->anchorInSight();
    for (QTreeWidgetItemIterator at(ui->tvContents); *at; ++at) {
        if ((*at)->data(0, Qt::UserRole).toString() == anchor) {
            ui->tvContents->setCurrentItem(*at);
            return;
        }
    }
}

} // namespace shell
