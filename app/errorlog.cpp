#include "app/errorlog.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace app {

namespace {

// Qt's message handler is a plain function and finds its file only here.
shell::LogFile* file = nullptr;
QtMessageHandler before = nullptr;

void handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (file && (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg)) {
        const QString kind = type == QtWarningMsg ? u"предупреждение"_s : u"ошибка"_s;
        const QString category = QString::fromUtf8(context.category);
        file->write(u"[%1] %2%3: %4"_s.arg(QCoreApplication::applicationVersion(), kind,
                                           category == u"default"_s ? QString() : u" "_s + category,
                                           text));
    }
    if (before) {
        before(type, context, text);
    }
}

} // namespace

ErrorLog::ErrorLog(const QString& path)
    : m_file(path)
{
    file = &m_file;
    before = qInstallMessageHandler(&handle);
}

ErrorLog::~ErrorLog()
{
    qInstallMessageHandler(before);
    file = nullptr;
}

} // namespace app
