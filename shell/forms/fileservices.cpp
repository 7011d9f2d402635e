#include "shell/forms/fileservices.h"

#include "shell/files/drives.h"
#include "shell/forms/commands.h"
#include "shell/forms/qtlongwork.h"
#include "shell/prompt.h"
#include "shell/session.h"

#include <QAction>

using namespace Qt::StringLiterals;

namespace shell {

FileServices::FileServices(const MainParts& parts, frmMain& window, const QString& archiveFolder)
    : QObject(&window)
    , m_parts(parts)
    , m_window(window)
    , m_ownWork(parts.work ? nullptr : std::make_unique<QtLongWork>())
    , m_ownDrives(parts.drives ? nullptr : std::make_unique<SystemDrives>())
    , m_care(parts.session, parts.prompt, window.statusLine(), Archive(archiveFolder))
    , m_copies({parts.session, parts.prompt, parts.chooser, window.statusLine(), window.files(),
                parts.work ? *parts.work : *m_ownWork, parts.drives ? *parts.drives : *m_ownDrives,
                m_care.archive()})
    , m_compact(parts.session, parts.prompt, window.statusLine(), window.files(),
                parts.work ? *parts.work : *m_ownWork, m_care.archive())
    , m_outside(parts.session, parts.prompt, window.files(), m_care.watch())
{
    window.files().setBeforeUpgrade([this](const QString& path) {
        return m_care.copies().beforeAction(path, path, u"обновлением файла"_s);
    });
}

FileServices::~FileServices() = default;

void FileServices::bind(Commands& commands)
{
    const auto bind = [&](const QString& name, Needs needs, auto body) {
        commands.bind(m_window.findChild<QAction*>(name), needs, body);
    };
    bind(u"mnuFileSaveAs"_s, Needs::OpenFile, [this] { m_copies.saveAs(); });
    bind(u"mnuFileSaveTo"_s, Needs::OpenFile, [this] { m_copies.copyToDrive(); });
    bind(u"mnuFileOpenFrom"_s, Needs::NotReadOnly, [this] { m_copies.restoreFromDrive(); });
    bind(u"mnuToolsAcc"_s, Needs::WritableFile, [this] { m_compact.run(); });
    bind(u"mnuToolsArh"_s, Needs::OpenFile, [this] { m_copies.archive(); });
    bind(u"mnuToolsArhOpen"_s, Needs::NotReadOnly, [this] { m_copies.restoreFromArchive(); });
}

void FileServices::offerCopy(const QString& text)
{
    const Role role = m_parts.session.user().role;
    if (!mayRun(role, u"mnuToolsArhOpen"_s)) {
        m_parts.prompt.critical(text);
    } else if (m_parts.prompt.offer(text, u"Восстановить из архива..."_s)) {
        m_copies.restoreFromArchive();
    }
}

} // namespace shell
