#include "shell/service/programdetails.h"

#include <QCoreApplication>
#include <QSysInfo>

#include <sqlite3.h>
#include <zip.h>

using namespace Qt::StringLiterals;

namespace shell {

QString programVersion()
{
    return QCoreApplication::applicationVersion();
}

QList<Component> components()
{
    return {
        {u"Qt"_s, QString::fromLatin1(qVersion()), u"LGPL-3.0"_s},
        {u"SQLite"_s, QString::fromLatin1(sqlite3_libversion()), u"Public Domain"_s},
        {u"libzip"_s, QString::fromLatin1(zip_libzip_version()), u"BSD-3-Clause"_s},
    };
}

QString programDetails()
{
    QStringList lines{u"Журнал %1"_s.arg(programVersion())};
    for (const Component& component : components()) {
        lines << u"%1 %2"_s.arg(component.name, component.version);
    }
    lines << u"%1, %2, ядро %3"_s.arg(QSysInfo::prettyProductName(),
                                      QSysInfo::currentCpuArchitecture(),
                                      QSysInfo::kernelVersion());
    return lines.join(u'\n');
}

QString updateText(const QString& executable)
{
    const QString now = u"Установлена версия %1.\n\n"_s.arg(programVersion());
    if (executable.startsWith(u"/usr/bin/"_s)) {
        return now
               + u"Программа установлена пакетом. Новую версию ставит тот, кто обслуживает "
                 "компьютер:\n\nsudo apt install ./jurnal_НОВАЯ-ВЕРСИЯ_amd64.deb\n\nДанные и "
                 "параметры при этом остаются на месте. Перед обновлением закройте программу."_s;
    }
    return now
           + u"Программа собрана из исходных текстов. В их папке выполните:\n\n"
             "git pull\n./run.sh --build\n\nДанные и параметры при этом остаются на месте. "
             "Перед обновлением закройте программу."_s;
}

} // namespace shell
