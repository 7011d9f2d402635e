#include "shell/session.h"

#include <utility>

namespace shell {

Session::Session(Wording wording, QObject* parent)
    : QObject(parent)
    , m_wording(wording)
{}

Session::~Session() = default;

void Session::openJournal(std::unique_ptr<data::Journal> journal)
{
    auto settings = journal->settings();
    m_journal = std::move(journal);
    m_settings = std::move(settings);
    emit journalChanged();
    emit settingsChanged();
}

void Session::closeJournal()
{
    m_journal.reset();
    m_settings = {};
    emit journalChanged();
}

void Session::signIn(SignedIn user)
{
    m_user = std::move(user);
    emit userChanged();
}

void Session::saveSettings(const data::SettingsRow& row)
{
    data::writeSettingsRow(database(), row);
    reloadSettings();
}

void Session::reloadSettings()
{
    m_settings = journal().settings();
    emit settingsChanged();
}

} // namespace shell
