#pragma once

#include "shell/wording.h"

#include <QByteArray>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QStringList>

namespace shell {

// Every setting of the user, as a row of the table in settings.cpp.
enum class Setting {
    // section "Settings"
    MainLeft,
    MainTop,
    MainWidth,
    MainHeight,
    MainState,    // 0 normal, 1 minimised, 2 maximised
    ShowToolbar,  // Tool0
    ShowStatus,   // StBar
    JournalMonth, // mes1: 1 to 12, 0 = none yet
    JournalYear,  // god1
    DayMode,      // keyDay: the journal shows days
    LessonMode,   // keyCal: the journal shows lessons
    GradeMode,    // rejim: 0 current, 1 monthly, 2 final grades
    GradeMonth,   // mes: 1 to 12, 0 = none yet
    GradeYear,    // god
    GradeGroup,   // group: its key, 0 = none yet
    GradePeriod,  // period: the study year as "2022 - 2023"
    School,       // Shkola: 0 college wording, 1 school wording
    // section "User"
    AppClose, // 1 while a run is in progress
    Login,
    Password,         // Passw: of the program, "" = none
    WorkloadFilter,   // Tip: 0 teacher, 1 group, 2 room
    WorkloadListItem, // ListIndex
    StudentsListItem, // ListIndexStud
    RankingBegin,     // LWdate1
    RankingEnd,       // LWdate2
    RankingOption,    // optr
    ImportFile,       // frmImpFile
    RecentFiles,
    Count
};

// The one owner of the per-user settings store.
class Settings final : public QObject
{
    Q_OBJECT

public:
    // The user's own store.
    explicit Settings(QObject* parent = nullptr);
    // A store in this file, for tests and portable use.
    explicit Settings(const QString& path, QObject* parent = nullptr);

    // The stored value, or the default of the table. A stored text that is no number reads
    // as the default.
    int number(Setting setting) const;
    bool flag(Setting setting) const;
    QString text(Setting setting) const;
    bool contains(Setting setting) const;

    void setNumber(Setting setting, int value);
    void setFlag(Setting setting, bool value);
    void setText(Setting setting, const QString& value);

    // The wording that the setting School asks for.
    Wording wording() const;

    // Most recent first, at most ten.
    QStringList recentFiles() const;
    void addRecentFile(const QString& path);
    void removeRecentFile(const QString& path);
    void clearRecentFiles() { store(Setting::RecentFiles, QStringList()); }

    // What the program remembers by itself, such as window and column sizes ("frmHPos/columns").
    QByteArray remembered(const QString& name) const;
    void remember(const QString& name, const QByteArray& state);

    // Writes what is pending to the store; false when the store cannot be written.
    bool sync();

signals:
    void changed(shell::Setting setting);

private:
    void store(Setting setting, const QVariant& value);

    QSettings m_store;
};

} // namespace shell
