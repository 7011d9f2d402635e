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
    QString name = QFileInfo(path).fileName();
    return u"&%1 %2"_s.arg(QString::number(number), name.replace(u'&', u"&&"_s));
}

} // namespace

RecentMenu::RecentMenu(QMenu& menu, QAction* before, const Settings& settings)
    : QObject(&menu)
    , m_settings(settings)
{
    for (int i = 0; i < kItems; ++i) {
        auto* item = new QAction(&menu);
        item->setObjectName(u"mnuFileMRU"_s);
        connect(item, &QAction::triggered, this,
                [this, item] { emit chosen(item->data().toString()); });
        menu.insertAction(before, item);
        m_items.append(item);
    }
    menu.setToolTipsVisible(true); // the folder tells files of one name apart
    connect(&menu, &QMenu::aboutToShow, this, &RecentMenu::refresh);
    refresh();
}

void RecentMenu::refresh()
{
    const QStringList paths = m_settings.recentFiles();
    for (int i = 0; i < kItems; ++i) {
        QAction* item = m_items[i];
        item->setVisible(i < paths.size());
        if (i < paths.size()) {
            item->setText(itemText(i + 1, paths[i]));
            item->setData(paths[i]);
            item->setToolTip(QDir::toNativeSeparators(paths[i]));
            item->setEnabled(QFileInfo(paths[i]).isFile());
        }
    }
}

} // namespace shell
