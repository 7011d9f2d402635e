#pragma once

#include <QList>
#include <QString>

namespace shell {

struct Component
{
    QString name;
    QString version; // of what is running, not of what was compiled against
    QString licence;
};

QString programVersion();
// The libraries that the program stands on.
QList<Component> components();
// Version, libraries and system, one a line, for a letter or a report. Nothing personal.
QString programDetails();
// What is installed and how a newer version comes to this computer. `executable` is the path
// of the running program.
QString updateText(const QString& executable);

} // namespace shell
