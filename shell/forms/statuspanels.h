#pragma once

#include "shell/statusline.h"

#include <QObject>
#include <QString>
#include <QTimer>

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

    // Shows at once, also in the middle of a command. A text that begins with "Ошибка" stays
    // for five seconds at least; of the texts that come meanwhile the last one follows then.
    void show(const QString& text) override;
    QString text() const;

private:
    void put(const QString& text);
    void showSession();

    Session& m_session;
    QLabel* m_progress;
    QLabel* m_file;
    QLabel* m_date;
    QLabel* m_user;
    QString m_waiting;
    QTimer m_errorTime; // runs while an error text must stay
};

} // namespace shell
