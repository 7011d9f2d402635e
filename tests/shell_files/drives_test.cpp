#include "shell/files/drives.h"

#include "tests/shell_files/tempfiles.h"

using namespace Qt::StringLiterals;

namespace {

// A tree like /sys: disks and partitions, linked from class/block.
class SystemTree : public TempFiles
{
protected:
    void plugIn(const QString& place, const QString& name, const QByteArray& removable) const
    {
        const QString disk = u"devices/%1/block/%2"_s.arg(place, name);
        QDir(folder.path()).mkpath(disk + u'/' + name + u'1');
        write(disk + u"/removable"_s, removable);
        write(u"%1/%2/partition"_s.arg(disk, name + u'1'), "1\n");
        QDir(folder.path()).mkpath(u"class/block"_s);
        QFile::link(pathOf(disk), pathOf(u"class/block/"_s + name));
        QFile::link(pathOf(u"%1/%2"_s.arg(disk, name + u'1')),
                    pathOf(u"class/block/%1"_s.arg(name + u'1')));
    }
};

} // namespace

TEST_F(SystemTree, TellsWhatCanBeTakenAway)
{
    plugIn(u"pci0/ata1"_s, u"sda"_s, "0\n");
    plugIn(u"pci0/usb1/1-2"_s, u"sdb"_s, "0\n"); // a large disk on USB
    plugIn(u"pci0/mmc0"_s, u"sdc"_s, "1\n");     // a card
    struct Row
    {
        QString device;
        QString root;
        bool removable;
    };
    const Row rows[] = {
        {u"/dev/sda1"_s, u"/home"_s, false},
        {u"/dev/sda"_s, u"/data"_s, false},
        {u"/dev/sdb1"_s, u"/mnt/usb"_s, true},
        {u"/dev/sdc1"_s, u"/mnt/card"_s, true},
        {u"/dev/sdc"_s, u"/mnt/card"_s, true},
        {u"/dev/sda1"_s, u"/media/user/BACKUP"_s, true},
        {u"/dev/sdz1"_s, u"/run/media/user/X"_s, true},
        {u"/dev/sdz1"_s, u"/mnt/x"_s, false},
        {u"tmpfs"_s, u"/run/user/1000"_s, false},
        {u"server:/share"_s, u"/mnt/share"_s, false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(shell::isRemovable(row.device, row.root, folder.path()), row.removable)
            << row.device.toStdString() << " on " << row.root.toStdString();
}
