#include "shell/forms/commands.h"

#include "shell/forms/runcommand.h"

#include <QAction>

#include <utility>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

const QString kFailure = u"Команда не выполнена."_s;

// The journal's words for a command, with the access key that the menu's own words have.
QString withAccessKey(const QString& text, const QString& usual)
{
    const auto sign = usual.indexOf(u'&');
    QString caption = text;
    caption.replace(u'&', u"&&"_s);
    const auto at = sign < 0 ? -1 : caption.indexOf(usual.mid(sign + 1, 1));
    return at < 0 ? caption : caption.insert(at, u'&');
}

} // namespace

Commands::Commands(const QList<QAction*>& actions, Prompt& prompt, QObject* parent)
    : QObject(parent)
    , m_prompt(prompt)
{
    for (QAction* action : actions) {
        action->setEnabled(false);
    }
}

void Commands::bind(QAction* action, Needs needs, std::function<void()> body)
{
    m_bound.push_back({action, needs});
    connect(action, &QAction::triggered, this,
            [this, run = std::move(body)] { runCommand(m_prompt, kFailure, run); });
}

void Commands::bindJournal(QAction* action, JournalAction what)
{
    m_journalBound.push_back({action, what, action->text()});
    connect(action, &QAction::triggered, this, [this, what] {
        runCommand(m_prompt, kFailure, [this, what] {
            if (m_journal && m_journal->available(what)) {
                m_journal->run(what);
            }
        });
    });
}

void Commands::refresh(bool fileOpen, QWidget* activeChild, Role role)
{
    for (const Bound& bound : m_bound) {
        const bool there = mayBeDone(bound.needs, fileOpen, activeChild);
        bound.action->setEnabled(there && mayRun(role, bound.action->objectName()));
    }
    auto* journal = qobject_cast<JournalActions*>(activeChild);
    if (journal != m_journal) {
        disconnect(m_watch);
        m_journal = journal;
        if (journal) {
            m_watch = connect(journal, &JournalActions::availabilityChanged, this,
                              &Commands::refreshJournal);
        }
    }
    refreshJournal();
}

bool Commands::mayBeDone(Needs needs, bool fileOpen, const QWidget* activeChild) const
{
    switch (needs) {
    case Needs::OpenFile:
        return fileOpen;
    case Needs::WritableFile:
        return fileOpen && m_writable;
    case Needs::NotReadOnly:
        return !fileOpen || m_writable;
    case Needs::ChildWindow:
        return activeChild != nullptr;
    case Needs::Nothing:
        break;
    }
    return true;
}

void Commands::refreshJournal()
{
    for (const JournalBound& bound : m_journalBound) {
        const bool reads =
            bound.what == JournalAction::Refresh || bound.what == JournalAction::Print;
        bound.action->setEnabled((reads || m_writable) && m_journal
                                 && m_journal->available(bound.what));
        const QString own = m_journal ? m_journal->caption(bound.what) : QString();
        bound.action->setText(own.isEmpty() ? bound.caption : withAccessKey(own, bound.caption));
    }
}

} // namespace shell
