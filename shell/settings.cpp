#include "shell/settings.h"

#include <QVariant>

#include <array>
#include <cassert>

using namespace Qt::StringLiterals;

namespace shell {

namespace {

constexpr qsizetype kRecentFiles = 10;

struct Row
{
    Setting setting;
    const char* key; // section/key
    QVariant preset;
};

const Row& row(Setting setting)
{
    static const std::array<Row, static_cast<std::size_t>(Setting::Count)> table = {{
        {Setting::MainLeft, "Settings/MainLeft", 100},
        {Setting::MainTop, "Settings/MainTop", 100},
        {Setting::MainWidth, "Settings/MainWidth", 1200},
        {Setting::MainHeight, "Settings/MainHeight", 800},
        {Setting::MainState, "Settings/MainState", 0},
        {Setting::ShowToolbar, "Settings/Tool0", 1},
        {Setting::ShowStatus, "Settings/StBar", 1},
        {Setting::JournalMonth, "Settings/mes1", 0},
        {Setting::JournalYear, "Settings/god1", 0},
        {Setting::DayMode, "Settings/keyDay", 1},
        {Setting::LessonMode, "Settings/keyCal", 0},
        {Setting::GradeMode, "Settings/rejim", 0},
        {Setting::GradeMonth, "Settings/mes", 0},
        {Setting::GradeYear, "Settings/god", 0},
        {Setting::GradeGroup, "Settings/group", 0},
        {Setting::GradePeriod, "Settings/period", QString()},
        {Setting::School, "Settings/Shkola", 0},
        {Setting::AppClose, "User/AppClose", u"0"_s},
        {Setting::Login, "User/Login", u"Администратор"_s},
        {Setting::Password, "User/Passw", QString()},
        {Setting::WorkloadFilter, "User/Tip", 0},
        {Setting::WorkloadListItem, "User/ListIndex", -1},
        {Setting::StudentsListItem, "User/ListIndexStud", -1},
        {Setting::RankingBegin, "User/LWdate1", QString()},
        {Setting::RankingEnd, "User/LWdate2", QString()},
        {Setting::RankingOption, "User/optr", 0},
        {Setting::ImportFile, "User/frmImpFile", QString()},
        {Setting::RecentFiles, "User/RecentFiles", QStringList()},
    }};
    const Row& found = table.at(static_cast<std::size_t>(setting));
    assert(found.setting == setting);
    return found;
}

} // namespace

Settings::Settings(QObject* parent)
    : QObject(parent)
    , m_store(QSettings::IniFormat, QSettings::UserScope, u"jurnal"_s, u"jurnal"_s)
{}

Settings::Settings(const QString& path, QObject* parent)
    : QObject(parent)
    , m_store(path, QSettings::IniFormat)
{}

int Settings::number(Setting setting) const
{
    const Row& known = row(setting);
    bool isNumber = false;
    const int value = m_store.value(QLatin1StringView(known.key), known.preset).toInt(&isNumber);
    return isNumber ? value : known.preset.toInt();
}

bool Settings::flag(Setting setting) const
{
    return number(setting) != 0;
}

QString Settings::text(Setting setting) const
{
    const Row& known = row(setting);
    return m_store.value(QLatin1StringView(known.key), known.preset).toString();
}

bool Settings::contains(Setting setting) const
{
    return m_store.contains(QLatin1StringView(row(setting).key));
}

void Settings::setNumber(Setting setting, int value)
{
    store(setting, value);
}

void Settings::setFlag(Setting setting, bool value)
{
    store(setting, value ? 1 : 0);
}

void Settings::setText(Setting setting, const QString& value)
{
    store(setting, value);
}

Wording Settings::wording() const
{
    return Wording(flag(Setting::School) ? Institution::School : Institution::College);
}

QStringList Settings::recentFiles() const
{
    return m_store.value(QLatin1StringView(row(Setting::RecentFiles).key)).toStringList();
}

void Settings::addRecentFile(const QString& path)
{
    QStringList files = recentFiles();
    files.removeAll(path);
    files.prepend(path);
    store(Setting::RecentFiles, files.mid(0, kRecentFiles));
}

void Settings::removeRecentFile(const QString& path)
{
    QStringList files = recentFiles();
    files.removeAll(path);
    store(Setting::RecentFiles, files);
}

QByteArray Settings::remembered(const QString& name) const
{
    return m_store.value(u"Windows/"_s + name).toByteArray();
}

void Settings::remember(const QString& name, const QByteArray& state)
{
    m_store.setValue(u"Windows/"_s + name, state);
}

bool Settings::sync()
{
    m_store.sync();
    return m_store.status() == QSettings::NoError;
}

void Settings::store(Setting setting, const QVariant& value)
{
    const auto key = QLatin1StringView(row(setting).key);
    if (m_store.contains(key) && m_store.value(key) == value)
        return;
    m_store.setValue(key, value);
    emit changed(setting);
}

} // namespace shell
