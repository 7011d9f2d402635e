#pragma once

#include "shell/forms/filechooser.h"

// Answers file dialogs from a list and remembers what was shown in the file manager.
class ScriptedChooser final : public shell::FileChooser
{
public:
    QString openJournal(const QString&) override { return answer; }
    QString openSource(const QString&, const QString&, const QString&) override { return answer; }
    QString newJournal(const QString&) override { return answer; }
    QString saveJournal(const QString&, const QString& name) override
    {
        suggested = name;
        return answer;
    }
    QString saveTable(const QString&, const QString& name) override
    {
        suggested = name;
        return answer;
    }
    QString saveDocument(const QString& folder, const QString& name) override
    {
        suggested = folder.isEmpty() ? name : folder + u'/' + name;
        return answer;
    }
    QString fileOnDrive(const shell::DriveRequest&) override { return driveFile; }
    std::optional<shell::ArchivedCopy> archivedCopy(const shell::Archive& archive,
                                                    const QString& journal, shell::Prompt&) override
    {
        const auto copies = archive.copies(journal);
        return choosesCopy && !copies.isEmpty() ? std::optional(copies.last()) : std::nullopt;
    }
    bool reveal(const QString& path) override
    {
        revealed = path;
        return hasFileManager;
    }

    QString answer;
    QString suggested;
    QString driveFile;
    bool choosesCopy = false; // the oldest one
    QString revealed;
    bool hasFileManager = true;
};
