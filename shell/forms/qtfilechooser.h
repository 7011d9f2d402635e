#pragma once

#include "shell/forms/filechooser.h"

namespace shell {

// The file dialogs and the file manager of the desktop.
class QtFileChooser final : public FileChooser
{
public:
    QString openJournal(const QString& folder) override;
    QString newJournal(const QString& folder) override;
    bool reveal(const QString& path) override;
};

} // namespace shell
