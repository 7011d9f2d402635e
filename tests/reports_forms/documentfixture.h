#pragma once

#include "reports/forms/documentparts.h"
#include "shell/session.h"
#include "shell/settings.h"
#include "tests/support/fakestarter.h"
#include "tests/support/scriptedchooser.h"
#include "tests/support/scriptedprompt.h"
#include "tests/support/smalljournal.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <stdexcept>

// What the windows of the reports work with, on a journal of its own: fill `file`, then open().
class DocumentFixture : public testing::Test
{
protected:
    explicit DocumentFixture(shell::Institution institution = shell::Institution::College)
        : session(shell::Wording(institution))
    {}

    void open() { session.openJournal(file.release()); }
    reports::DocumentParts parts()
    {
        return {session, settings, prompt, status, chooser, starter, [this] {
                    if (documents.isEmpty())
                        throw std::runtime_error("папки нет");
                    return documents;
                }};
    }
    QStringList written() const { return QDir(folder.path()).entryList(QDir::Files, QDir::Name); }

    QTemporaryDir folder;
    QTemporaryDir settingsFolder;
    QString documents = folder.path();
    SmallJournal file;
    shell::Session session;
    shell::Settings settings{settingsFolder.filePath(QStringLiteral("settings.ini"))};
    ScriptedPrompt prompt;
    RecordingStatusLine status;
    ScriptedChooser chooser;
    FakeStarter starter;
};
