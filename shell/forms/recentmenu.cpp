#include "shell/forms/recentmenu.h"

#include "shell/settings.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr int kItems = 3;

QString itemText(int number, const QString& path)
{
    constexpr int kKeys = 9; // there are no more digits
    QString name = QFileInfo(path).fileName();
    return (number <= kKeys ? u"&%1 %2"_s : u"%1 %2"_s)
        .arg(QString::number(number), name.replace(u'&', u"&&"_s));
}

void show(QAction& item, int number, const QString& path)
{
    item.setText(itemText(number, path));
    item.setData(path);
    item.setToolTip(QDir::toNativeSeparators(path));
    item.setEnabled(QFileInfo(path).isFile());
}

} // namespace

RecentMenu::RecentMenu(QMenu& menu, QAction* before, Settings& settings)
    : QObject(&menu)
    , m_settings(settings)
    , m_all(new QMenu(u"Последние &файлы"_s, &menu))
{
    for (int i = 0; i < kItems; ++i) {
        m_items.append(newItem(u"mnuFileMRU"_s));
        menu.insertAction(before, m_items.last());
    }
    m_all->setObjectName(u"mnuFileMRUAll"_s);
    m_all->setToolTipsVisible(true);
    menu.insertMenu(before, m_all);
    menu.setToolTipsVisible(true); // the folder tells files of one name apart
    connect(&menu, &QMenu::aboutToShow, this, &RecentMenu::refresh);
    connect(m_all, &QMenu::aboutToShow, this, &RecentMenu::fillAll);
    refresh();
}

QAction* RecentMenu::newItem(const QString& name)
{
    auto* item = new QAction(parent());
    item->setObjectName(name);
    connect(item, &QAction::triggered, this,
            [this, item] { emit chosen(item->data().toString()); });
    return item;
}

void RecentMenu::refresh()
{
    const QStringList paths = m_settings.recentFiles();
    for (int i = 0; i < kItems; ++i) {
        m_items[i]->setVisible(i < paths.size());
        if (i < paths.size()) {
            show(*m_items[i], i + 1, paths[i]);
        }
    }
    m_all->menuAction()->setVisible(!paths.isEmpty());
}

void RecentMenu::fillAll()
{
    for (QAction* item : m_all->actions()) {
        item->deleteLater();
    }
    m_all->clear();
    int number = 0;
    for (const QString& path : m_settings.recentFiles()) {
        QAction* item = newItem(u"mnuFileMRUItem"_s);
        show(*item, ++number, path);
        m_all->addAction(item);
    }
    m_all->addSeparator();
    auto* clear = new QAction(u"&Очистить список"_s, this);
    clear->setObjectName(u"mnuFileMRUClear"_s);
    connect(clear, &QAction::triggered, this, [this] { m_settings.clearRecentFiles(); });
    m_all->addAction(clear);
}

} // namespace shell
