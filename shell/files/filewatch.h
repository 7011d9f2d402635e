#pragma once

#include "shell/files/filestamp.h"

#include <QObject>

#include <functional>
#include <optional>

namespace shell {

class Session;

// Watches the open journal file for what others do to it. The engine's lock keeps every
// program away that asks for one; a program that does not, or a disk that is pulled out,
// shows in the file's stamp. A changed file is never written: the change is refused.
class FileWatch final : public QObject
{
    Q_OBJECT

public:
    enum class State { Untouched, Changed, Gone };

    // Watches whatever journal the session has open, from its opening on.
    explicit FileWatch(Session& session, QObject* parent = nullptr);
    ~FileWatch() override;

    // Called before every change of a file that is as it should be.
    void setBeforeChange(std::function<void()> call) { m_beforeChange = std::move(call); }
    State state() const;
    // Takes the file as it is for the one that was opened.
    void accept();

signals:
    // A change has been refused; comes when the command that wanted it has ended.
    void refused();

private:
    void watch();
    void check();
    void settle();

    Session& m_session;
    std::function<void()> m_beforeChange;
    std::optional<FileStamp> m_stamp; // after the last change of our own
    bool m_changing = false;          // our own change is on its way; the stamp is not valid
};

} // namespace shell
