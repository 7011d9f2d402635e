#pragma once

#include <QList>
#include <QObject>
#include <QString>

class QAction;
class QMenu;

namespace shell {

class Settings;

// The three items mnuFileMRU of the file menu: the recently used files, most recent first.
// An item whose file is missing is greyed; items without a file are hidden.
class RecentMenu final : public QObject
{
    Q_OBJECT

public:
    // Puts the items above `before`. `menu` becomes the parent.
    RecentMenu(QMenu& menu, QAction* before, const Settings& settings);

signals:
    void chosen(const QString& path);

private:
    void refresh();

    const Settings& m_settings;
    QList<QAction*> m_items;
};

} // namespace shell
