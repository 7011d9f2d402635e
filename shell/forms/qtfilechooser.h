#pragma once

#include "shell/forms/filechooser.h"

namespace shell {

// The file dialogs and the file manager of the desktop.
class QtFileChooser final : public FileChooser
{
public:
    QString openJournal(const QString& folder) override;
    QString openSource(const QString& title, const QString& filter, const QString& last) override;
    QString newJournal(const QString& folder) override;
    QString saveJournal(const QString& folder, const QString& name) override;
    QString saveTable(const QString& folder, const QString& name) override;
    QString saveDocument(const QString& folder, const QString& name) override;
    QString fileOnDrive(const DriveRequest& request) override;
    std::optional<ArchivedCopy> archivedCopy(const Archive& archive, const QString& journal,
                                             Prompt& prompt) override;
    bool reveal(const QString& path) override;
};

} // namespace shell
