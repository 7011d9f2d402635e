#include "shell/settings.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using shell::Setting;
using shell::Settings;

namespace {

class SettingsStore : public testing::Test
{
protected:
    QString path() const { return m_folder.filePath(u"jurnal.ini"_s); }
    QVariant raw(const QString& key) const
    {
        return QSettings(path(), QSettings::IniFormat).value(key);
    }

private:
    QTemporaryDir m_folder;
};

} // namespace

TEST_F(SettingsStore, AnEmptyStoreGivesTheDefaults)
{
    const Settings settings(path());
    EXPECT_EQ(settings.text(Setting::Login), u"Администратор"_s);
    EXPECT_EQ(settings.number(Setting::School), 0);
    EXPECT_TRUE(settings.flag(Setting::ShowToolbar));
    EXPECT_TRUE(settings.flag(Setting::ShowStatus));
    EXPECT_TRUE(settings.flag(Setting::DayMode));
    EXPECT_FALSE(settings.flag(Setting::LessonMode));
    EXPECT_EQ(settings.text(Setting::Password), QString());
    EXPECT_FALSE(settings.contains(Setting::MainLeft));
    EXPECT_TRUE(settings.recentFiles().isEmpty());
}

TEST_F(SettingsStore, ValuesSurviveUnderTheirFixedKeys)
{
    {
        Settings settings(path());
        settings.setNumber(Setting::JournalMonth, 11);
        settings.setNumber(Setting::JournalYear, 2024);
        settings.setFlag(Setting::ShowToolbar, false);
        settings.setText(Setting::AppClose, u"1"_s);
        settings.setText(Setting::Login, u"Оператор \"Иван\"; #1"_s);
        settings.setNumber(Setting::MainLeft, -1200);
        settings.remember(u"frmHPos/columns"_s, QByteArray("\0\1\xff", 3));
    }
    EXPECT_EQ(raw(u"Settings/mes1"_s).toInt(), 11);
    EXPECT_EQ(raw(u"Settings/god1"_s).toInt(), 2024);
    EXPECT_EQ(raw(u"Settings/Tool0"_s).toInt(), 0);
    EXPECT_EQ(raw(u"User/AppClose"_s).toString(), u"1"_s);
    const Settings again(path());
    EXPECT_FALSE(again.flag(Setting::ShowToolbar));
    EXPECT_EQ(again.text(Setting::Login), u"Оператор \"Иван\"; #1"_s);
    EXPECT_EQ(again.number(Setting::MainLeft), -1200);
    EXPECT_EQ(again.remembered(u"frmHPos/columns"_s), QByteArray("\0\1\xff", 3));
}

TEST_F(SettingsStore, ASpoiledNumberReadsAsTheDefault)
{
    QSettings(path(), QSettings::IniFormat).setValue(u"Settings/MainWidth"_s, u"wide"_s);
    const Settings settings(path());
    EXPECT_EQ(settings.number(Setting::MainWidth), 1200);
}

TEST_F(SettingsStore, TellsOnlyRealChanges)
{
    Settings settings(path());
    QList<Setting> changes;
    QObject::connect(&settings, &Settings::changed, [&](Setting which) { changes << which; });
    settings.setNumber(Setting::School, 1);
    settings.setNumber(Setting::School, 1);
    settings.setFlag(Setting::School, true);
    settings.setText(Setting::Login, u"Оператор"_s);
    EXPECT_EQ(changes, (QList<Setting>{Setting::School, Setting::Login}));
}

TEST_F(SettingsStore, KeepsTheTenLatestFiles)
{
    Settings settings(path());
    for (int i = 0; i < 11; ++i)
        settings.addRecentFile(u"%1.mdb"_s.arg(i));
    EXPECT_EQ(settings.recentFiles().size(), 10);
    EXPECT_FALSE(settings.recentFiles().contains(u"0.mdb"_s));
    settings.clearRecentFiles();
    for (const QString& file : {u"a.mdb"_s, u"b.mdb"_s, u"a.mdb"_s, u"d, e.mdb"_s})
        settings.addRecentFile(file);
    EXPECT_EQ(Settings(path()).recentFiles(), (QStringList{u"d, e.mdb"_s, u"a.mdb"_s, u"b.mdb"_s}));
    settings.removeRecentFile(u"a.mdb"_s);
    settings.removeRecentFile(u"missing.mdb"_s);
    EXPECT_EQ(settings.recentFiles(), (QStringList{u"d, e.mdb"_s, u"b.mdb"_s}));
}

TEST_F(SettingsStore, SaysWhenTheStoreCannotBeWritten)
{
    // A folder stands where the file would be.
    ASSERT_TRUE(QDir().mkpath(path()));
    Settings settings(path());
    settings.setNumber(Setting::School, 1);
    EXPECT_FALSE(settings.sync());
}
