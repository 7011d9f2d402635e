#include "shell/forms/filedrop.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

QString journalIn(const QDropEvent& drop)
{
    for (const QUrl& url : drop.mimeData()->urls()) {
        QString path = url.toLocalFile();
        if (QFileInfo(path).suffix().compare(u"mdb"_s, Qt::CaseInsensitive) == 0) {
            return path;
        }
    }
    return {};
}

} // namespace

FileDrop::FileDrop(QWidget& window)
    : QObject(&window)
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

// The program the file comes from waits for the answer: no message may be shown before it.
bool FileDrop::eventFilter(QObject* watched, QEvent* event)
{
    const bool entered = event->type() == QEvent::DragEnter;
    if (!entered && event->type() != QEvent::Drop) {
        return QObject::eventFilter(watched, event);
    }
    auto& drop = static_cast<QDropEvent&>(*event);
    const QString path = journalIn(drop);
    if (path.isEmpty()) {
        return QObject::eventFilter(watched, event);
    }
    drop.setDropAction(Qt::CopyAction); // whatever is offered: the file stays where it is
    drop.accept();
    if (!entered) {
        QMetaObject::invokeMethod(
            this, [this, path] { emit dropped(path); }, Qt::QueuedConnection);
    }
    return true;
}

} // namespace shell
