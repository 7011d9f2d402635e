#include "shell/forms/frmdrive.h"
#include "tests/shell_forms/accessible.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using shell::DriveAim;
using shell::frmDrive;

namespace {

class PreparedDrives final : public shell::Drives
{
public:
    QList<shell::Drive> removable() const override { return list; }
    QList<shell::Drive> list;
};

class DriveDialog : public testing::Test
{
protected:
    shell::Drive drive(const QString& name, qint64 freeBytes, bool readOnly = false) const
    {
        QDir(folder.path()).mkdir(name);
        return {name, folder.filePath(name), freeBytes, qint64{1} << 33, readOnly};
    }
    void putFile(const QString& path) const
    {
        QFile file(folder.filePath(path));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("x");
    }
    void show(DriveAim aim, const QString& name)
    {
        dialog =
            std::make_unique<frmDrive>(shell::DriveRequest{aim, drives, name, qint64{30} << 20});
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    template <class Widget>
    Widget* named(const QString& name) const
    {
        return dialog->findChild<Widget*>(name);
    }
    bool mayGoOn() const { return named<QPushButton>(u"cmdOK"_s)->isEnabled(); }

    QTemporaryDir folder;
    PreparedDrives drives;
    std::unique_ptr<frmDrive> dialog;
};

} // namespace

TEST_F(DriveDialog, ChoosesADriveByTheKeyboard)
{
    drives.list = {drive(u"ПОЛНЫЙ"_s, 1000), drive(u"ЗАЩИТА"_s, qint64{1} << 32, true),
                   drive(u"ФЛЕШКА"_s, qint64{1} << 32)};
    show(DriveAim::CopyTo, u"Журнал.mdb"_s);
    auto* list = named<QTreeWidget>(u"lvDrives"_s);
    EXPECT_EQ(withoutAccessibleName(*dialog), "");
    EXPECT_TRUE(list->hasFocus());
    EXPECT_FALSE(named<QTreeWidget>(u"lvFiles"_s)->isVisible());
    EXPECT_FALSE(mayGoOn());
    EXPECT_EQ(named<QLabel>(u"lblHint"_s)->text(),
              u"На диске мало места: нужно 30,0 МБ, свободно 1 КБ."_s);
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_FALSE(mayGoOn());
    EXPECT_EQ(named<QLabel>(u"lblHint"_s)->text(), u"Этот диск доступен только для чтения."_s);
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_TRUE(mayGoOn());
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->path(), folder.filePath(u"ФЛЕШКА/Журнал.mdb"_s));
}

TEST_F(DriveDialog, FindsADrivePluggedInMeanwhile)
{
    show(DriveAim::CopyTo, u"Журнал.mdb"_s);
    EXPECT_FALSE(mayGoOn());
    EXPECT_TRUE(named<QLabel>(u"lblHint"_s)->text().startsWith(u"Съемных дисков нет."_s));
    drives.list = {drive(u"ФЛЕШКА"_s, qint64{1} << 32)};
    QTest::keyClick(dialog.get(), Qt::Key_F5);
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return mayGoOn(); })); // a button pressed by its key takes a moment
    QTest::mouseClick(named<QPushButton>(u"cmdOK"_s), Qt::LeftButton);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

TEST_F(DriveDialog, OffersTheFileOfTheSameNameForRestoring)
{
    drives.list = {drive(u"ФЛЕШКА"_s, 0, true), drive(u"ПУСТАЯ"_s, 0)};
    for (const QString& name : {u"а.mdb"_s, u"Журнал.mdb"_s, u"письмо.txt"_s})
        putFile(u"ФЛЕШКА/"_s + name);
    show(DriveAim::RestoreFrom, u"Журнал.mdb"_s);
    auto* files = named<QTreeWidget>(u"lvFiles"_s);
    EXPECT_EQ(files->topLevelItemCount(), 2);
    EXPECT_EQ(dialog->path(), folder.filePath(u"ФЛЕШКА/Журнал.mdb"_s));
    QTest::keyClick(named<QTreeWidget>(u"lvDrives"_s), Qt::Key_Down);
    EXPECT_FALSE(mayGoOn());
    EXPECT_EQ(dialog->path(), QString());
    QTest::keyClick(named<QTreeWidget>(u"lvDrives"_s), Qt::Key_Up);
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}
