#pragma once

#include <QList>
#include <QObject>
#include <QString>

class QAction;
class QMenu;

namespace shell {

class Settings;

// The three items mnuFileMRU of the file menu, the most recent files, and the submenu with all
// of them and the command that clears the list. An item whose file is missing is greyed; items
// without a file are hidden.
class RecentMenu final : public QObject
{
    Q_OBJECT

public:
    // Puts the items above `before`. `menu` becomes the parent.
    RecentMenu(QMenu& menu, QAction* before, Settings& settings);

signals:
    void chosen(const QString& path);

private:
    QAction* newItem(const QString& name);
    void refresh();
    void fillAll();

    Settings& m_settings;
    QList<QAction*> m_items;
    QMenu* m_all;
};

} // namespace shell
