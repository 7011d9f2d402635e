#pragma once

#include "app/options.h"

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace app {

// Keeps one program per user and settings: a later start hands what it was asked to do to the
// first one and ends.
class SingleInstance final : public QObject
{
    Q_OBJECT

public:
    // `name` tells instances apart; on Unix the path of a socket.
    explicit SingleInstance(QString name, QObject* parent = nullptr);

    // True when another instance runs and has taken the request over. Waits for at most about
    // two seconds, so that one that hangs does not keep this one from starting.
    bool handOver(const Options& options) const;
    // Takes requests from now on, also in place of an instance that ended without clearing up;
    // false where there is no place to listen.
    bool listen();

signals:
    void requested(const app::Options& options);

private:
    void receive();

    QString m_name;
    QLocalServer m_server;
};

// The name for the user's settings, in a folder that only the user can enter.
QString instanceName();

} // namespace app
