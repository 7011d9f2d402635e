#include "tests/cli/jurnalctl.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

CommandResult jurnalctl(const std::vector<std::string>& arguments)
{
    QStringList list;
    for (const std::string& argument : arguments)
        list << QString::fromStdString(argument);
    const QTemporaryDir settings;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_CONFIG_HOME"_s, settings.path());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(JURNALCTL), list);
    CommandResult result;
    if (process.waitForFinished(60'000) && process.exitStatus() == QProcess::NormalExit)
        result.status = process.exitCode();
    result.out = process.readAllStandardOutput().toStdString();
    result.err = process.readAllStandardError().toStdString();
    return result;
}
