#pragma once

#include "data/journal.h"
#include "data/settingsrow.h"
#include "shell/access/users.h"
#include "shell/wording.h"

#include <QDate>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <utility>

namespace shell {

// What is in force while the program runs: the open journal, who works in it, and the
// values of the settings row that others read often. main() owns it and passes it on.
class Session final : public QObject
{
    Q_OBJECT

public:
    explicit Session(Wording wording = Wording(), QObject* parent = nullptr);
    ~Session() override;

    bool isOpen() const { return m_journal != nullptr; }
    // Both require isOpen().
    data::Journal& journal() { return *m_journal; }
    jet::Database& database() { return m_journal->database(); }

    // Takes over an opened file and reads its settings row. Throws jet::Error; the session
    // then keeps the journal it had.
    void openJournal(std::unique_ptr<data::Journal> journal);
    void closeJournal();

    // To be called before an action that changes much at once, such as an import or automatic
    // finals: a copy of the file is made. `action` follows "перед", as "импортом занятий".
    // False when the user would rather not go on. Requires isOpen().
    bool beforeMassAction(const QString& action)
    {
        return !m_massActionGuard || m_massActionGuard(action);
    }
    void setMassActionGuard(std::function<bool(const QString& action)> guard)
    {
        m_massActionGuard = std::move(guard);
    }

    const Wording& wording() const { return m_wording; }
    const SignedIn& user() const { return m_user; }
    void signIn(SignedIn user);
    bool mayEditBooks() const { return shell::mayEditBooks(m_user.role); }
    bool mayEditUsers() const { return shell::mayEditUsers(m_user.role); }

    const data::SettingsRow& settings() const { return m_settings; }
    // Stores the row and puts it in force. Throws jet::Error. Requires isOpen().
    void saveSettings(const data::SettingsRow& row);
    // Reads the row again. Throws jet::Error. Requires isOpen().
    void reloadSettings();

    // Invalid when the row has none.
    QDate workingDate() const { return m_settings.workingDate; }
    QDate yearBegin() const { return m_settings.yearBegin; }
    QDate yearEnd() const { return m_settings.yearEnd; }
    int hoursPerLesson() const { return m_settings.hoursPerLesson; }

signals:
    void journalChanged(); // opened, closed or replaced
    void settingsChanged();
    void userChanged();

private:
    Wording m_wording;
    SignedIn m_user;
    std::unique_ptr<data::Journal> m_journal;
    data::SettingsRow m_settings;
    std::function<bool(const QString& action)> m_massActionGuard;
};

} // namespace shell
