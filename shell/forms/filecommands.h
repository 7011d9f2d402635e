#pragma once

#include "shell/access/users.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace data {
class Journal;
}
namespace jet {
class Error;
}

namespace shell {

class FileChooser;
class Prompt;
class Session;
class Settings;
class StatusLine;

// Makes a journal file with a demonstration institution at a path where none is; false when it
// was refused and the user has been told. May throw.
using DemoBuilder = std::function<bool(const QString& path)>;
// Asks the windows that show the open file to close; false when one of them stays.
using ReleaseWindows = std::function<bool()>;
// Asks who signs in; null when nobody does.
using AskUser = std::function<std::optional<SignedIn>(const Users& users)>;

enum class Access { Full, ReadOnly };

// The commands that open, create and close journal files. The present file stays open and in
// force until the other one has been opened and checked; every command that fails or is
// cancelled ends with its own message and gives false. A file that another program holds, or
// that may not be written, is offered for reading.
class FileCommands final : public QObject
{
    Q_OBJECT

public:
    FileCommands(Session& session, Settings& settings, Prompt& prompt, FileChooser& chooser,
                 StatusLine& status, QObject* parent = nullptr);

    void setReleaseWindows(ReleaseWindows release) { m_release = std::move(release); }
    // Asked when a file with passwords has been opened, before it comes into force.
    void setAskUser(AskUser askUser) { m_askUser = std::move(askUser); }
    void setDemo(DemoBuilder builder, const QString& folder);
    // Asked before a file of an earlier release is brought up to date; false leaves it alone.
    void setBeforeUpgrade(std::function<bool(const QString& path)> ask)
    {
        m_beforeUpgrade = std::move(ask);
    }
    bool hasDemo() const { return bool(m_demo); }

    bool create();
    bool create(const QString& path);
    bool open();
    bool open(const QString& path, Access access = Access::Full);
    // Opens a file whose users are those of a file open a moment ago: `user` stays signed in.
    bool openAs(const SignedIn& user, const QString& path, Access access = Access::Full);
    bool close();
    // Closes the open file and opens it again as it is now. Requires an open file.
    bool reload();
    // The folder where the user is likely to look for journals.
    QString startFolder() const;
    // Lets another user of the open file sign in; the windows of the present one close. False
    // when nobody did. Requires an open file.
    bool changeUser();
    // Shows the open file in the file manager. Requires an open file.
    bool reveal();
    // Opens the demonstration journal, which is built first unless it is there already.
    bool demonstrate();

private:
    bool buildDemo(const QString& path);
    enum class Way { Create, Open, OpenReadOnly };
    bool take(const QString& path, Way way);
    std::unique_ptr<data::Journal> journalAt(const QString& path, Way way);
    std::unique_ptr<data::Journal> offerReading(const QString& path, const jet::Error& error);
    std::unique_ptr<data::Journal> heldJournal(const QString& path);
    std::optional<SignedIn> signIn(data::Journal& journal);

    Session& m_session;
    Settings& m_settings;
    Prompt& m_prompt;
    FileChooser& m_chooser;
    StatusLine& m_status;
    ReleaseWindows m_release = [] { return true; };
    AskUser m_askUser = [](const Users&) { return std::optional<SignedIn>(); };
    std::function<bool(const QString&)> m_beforeUpgrade = [](const QString&) { return true; };
    std::optional<SignedIn> m_sameUser; // needs not be asked again
    DemoBuilder m_demo;
    QString m_demoFolder;
};

} // namespace shell
