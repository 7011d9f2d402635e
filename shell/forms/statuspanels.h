#pragma once

#include "shell/statusline.h"

#include <QObject>
#include <QString>

class QLabel;
class QStatusBar;

namespace shell {

class Session;

// The panels of the main window's status bar: progress text, open file, working date, user.
class StatusPanels final : public QObject, public StatusLine
{
    Q_OBJECT

public:
    StatusPanels(QStatusBar& bar, Session& session);

    // Shows at once, also in the middle of a command. A text stays until the next one comes:
    // no clock takes an error away, and what was done since is never hidden behind it.
    void show(const QString& text) override;
    QString text() const;

private:
    void showSession();

    Session& m_session;
    QLabel* m_progress;
    QLabel* m_file;
    QLabel* m_date;
    QLabel* m_user;
};

} // namespace shell
