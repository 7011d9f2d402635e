#pragma once

#include "shell/forms/frmmain.h"
#include "shell/forms/journalactions.h"
#include "shell/forms/windowregistry.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "tests/support/fakestarter.h"
#include "tests/support/scriptedchooser.h"
#include "tests/support/scriptedprompt.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QTemporaryDir>

#include <set>

// A journal window that offers what it is told to and remembers what was asked of it.
class FakeJournal final : public shell::JournalActions
{
    Q_OBJECT

public:
    using JournalActions::JournalActions;

    bool available(shell::JournalAction action) const override { return offered.contains(action); }
    QString caption(shell::JournalAction action) const override
    {
        return action == shell::JournalAction::Undo ? undoCaption : QString();
    }
    void run(shell::JournalAction action) override { ran.push_back(action); }
    void offer(std::set<shell::JournalAction> actions)
    {
        offered = std::move(actions);
        emit availabilityChanged();
    }

    std::set<shell::JournalAction> offered;
    std::vector<shell::JournalAction> ran;
    QString undoCaption;
    bool staysOpen = false;

protected:
    void closeEvent(QCloseEvent* event) override;
};

// The main window with settings and folders of its own and nobody at the desk.
class MainWindow : public testing::Test
{
protected:
    MainWindow();

    // Builds the window as the program does and shows it.
    void start(const QString& file = {});
    // Closes the window as the user does and builds the next one from what was saved.
    void restart(const QString& file = {});
    QString pathOf(const QString& name) const { return folder.filePath(name); }
    // A fresh journal file.
    QString newJournal(const QString& name);

    QAction* action(const QString& name) const;
    template <class Widget>
    Widget* named(const QString& name) const
    {
        auto* widget = window->findChild<Widget*>(name);
        EXPECT_NE(widget, nullptr) << name.toStdString();
        return widget;
    }
    void trigger(const QString& name);
    FakeJournal* openFakeJournal();

    QTemporaryDir folder;
    ScriptedPrompt prompt;
    ScriptedChooser chooser;
    FakeStarter starter;
    shell::Settings settings;
    shell::Session session;
    shell::WindowRegistry windows;
    std::unique_ptr<shell::frmMain> window;
};
