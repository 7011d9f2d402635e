#include "app/desktop.h"

#include "shell/forms/frmmain.h"
#include "shell/session.h"
#include "shell/statusline.h"

#include <QApplication>
#include <QFileInfo>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace app {

namespace {

constexpr int kMostDialogs = 20; // one above the other; a box that will not close is one, too

void bringToFront(QWidget& window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
    QApplication::alert(&window); // where the desktop lets no program come forward
}

bool isOpen(shell::Session& session, const QString& file)
{
    const QString wanted = QFileInfo(file).canonicalFilePath();
    return session.isOpen() && !wanted.isEmpty()
           && QFileInfo(session.journal().path()).canonicalFilePath() == wanted;
}

void leaveStep(shell::frmMain& window, int dialogsLeft)
{
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog && dialogsLeft > 0) {
        dialog->close();
        // Its caller goes on first.
        QTimer::singleShot(0, &window,
                           [&window, dialogsLeft] { leaveStep(window, dialogsLeft - 1); });
        return;
    }
    window.close();
    QCoreApplication::quit();
}

} // namespace

void carryOut(shell::frmMain& window, const Options& options, const QString& file)
{
    if (options.newFile) {
        file.isEmpty() ? window.files().create() : window.files().create(file);
    } else if (options.demo) {
        window.files().demonstrate();
    }
}

void takeOver(shell::frmMain& window, shell::Session& session, const Options& options)
{
    bringToFront(window);
    const bool wants = options.newFile || options.demo || !options.file.isEmpty();
    if (!wants || isOpen(session, options.file)) {
        return;
    }
    if (QApplication::activeModalWidget()) {
        window.statusLine().show(
            u"Закройте открытое окно и повторите: %1"_s.arg(QFileInfo(options.file).fileName()));
        return;
    }
    if (options.newFile || options.demo) {
        carryOut(window, options, options.file);
    } else {
        window.files().open(options.file,
                            options.readOnly ? shell::Access::ReadOnly : shell::Access::Full);
    }
}

void leave(shell::frmMain& window)
{
    leaveStep(window, kMostDialogs);
}

} // namespace app
