#pragma once

#include "shell/files/journalcare.h"
#include "shell/forms/compactcommand.h"
#include "shell/forms/copycommands.h"
#include "shell/forms/frmmain.h"
#include "shell/forms/outsidechange.h"

#include <memory>

namespace shell {

class Commands;

// All that the main window has for whole journal files beside opening and closing them:
// copies, archive, compaction, and the care of the open file.
class FileServices final : public QObject
{
    Q_OBJECT

public:
    // `archiveFolder` is made when the first copy needs it. `window` becomes the parent.
    FileServices(const MainParts& parts, frmMain& window, const QString& archiveFolder);
    ~FileServices() override;

    // Ties the menu's actions to the commands.
    void bind(Commands& commands);
    // Tells that the open file is damaged and offers to bring a copy back at once, to those who
    // may.
    void offerCopy(const QString& text);
    // The user has come back to the window.
    void lookAtFile() { m_outside.look(); }
    JournalCare& care() { return m_care; }

private:
    const MainParts& m_parts;
    frmMain& m_window;
    std::unique_ptr<LongWork> m_ownWork; // null when the parts bring theirs
    std::unique_ptr<Drives> m_ownDrives;
    JournalCare m_care;
    CopyCommands m_copies;
    CompactCommand m_compact;
    OutsideChange m_outside;
};

} // namespace shell
