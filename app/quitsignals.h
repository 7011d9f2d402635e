#pragma once

#include <QObject>

namespace app {

// Turns the system's wish that the program end (a session's end, Ctrl+C in the terminal) into
// a signal of the event loop. One at a time.
class QuitSignals final : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject* parent = nullptr);
    ~QuitSignals() override;

signals:
    void quitWanted();
};

} // namespace app
