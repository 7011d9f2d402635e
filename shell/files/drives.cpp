#include "shell/files/drives.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

using namespace Qt::StringLiterals;

namespace shell {

namespace {

bool saysRemovable(const QString& disk)
{
    QFile file(disk + u"/removable"_s);
    return file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == "1";
}

// Large USB disks call themselves fixed; their place in the tree of devices tells.
bool hangsOnUsb(const QString& disk)
{
    return QFileInfo(disk).canonicalFilePath().contains(u"/usb"_s);
}

} // namespace

bool isRemovable(const QString& device, const QString& root, const QString& system)
{
    for (const QString& place : {u"/media/"_s, u"/run/media/"_s}) {
        if (root.startsWith(place))
            return true;
    }
    const QString name = QFileInfo(device).fileName();
    if (!device.startsWith(u"/dev/"_s) || name.isEmpty())
        return false;
    // /sys/class/block holds disks and partitions alike; a partition lies within its disk.
    const QFileInfo entry(system + u"/class/block/"_s + name);
    QString disk = entry.canonicalFilePath();
    if (disk.isEmpty())
        return false;
    if (QFileInfo::exists(disk + u"/partition"_s))
        disk = QFileInfo(disk).absolutePath();
    return saysRemovable(disk) || hangsOnUsb(disk);
}

QList<Drive> SystemDrives::removable() const
{
    QList<Drive> drives;
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (!volume.isValid() || !volume.isReady())
            continue;
#ifdef Q_OS_WIN
        const QString root = QDir::toNativeSeparators(volume.rootPath());
        const bool wanted =
            GetDriveTypeW(reinterpret_cast<LPCWSTR>(root.utf16())) == DRIVE_REMOVABLE;
#else
        const bool wanted =
            volume.rootPath() != u"/"_s
            && isRemovable(QString::fromLocal8Bit(volume.device()), volume.rootPath(), u"/sys"_s);
#endif
        if (wanted)
            drives.append({volume.name(), volume.rootPath(), volume.bytesAvailable(),
                           volume.bytesTotal(), volume.isReadOnly()});
    }
    return drives;
}

} // namespace shell
