#pragma once

#include <QDate>
#include <QString>

#include <optional>
#include <string_view>

namespace jet {
class Database;
}

namespace data {

// The one row of RASP: what the institution set for its journal. Empty dates are invalid.
struct SettingsRow
{
    QString institution;           // NAIM
    QString address;               // ADR
    QString headPost;              // DIR_D
    QString headName;              // DIR_FIO
    bool printHead = false;        // DIR_P: the approval block on documents
    QString responsiblePost;       // OTV_D
    QString responsibleName;       // OTV_FIO
    bool printResponsible = false; // OTV_P: the signature line on documents
    QDate workingDate;             // DATR
    QDate yearBegin;               // DATN: first day of the study year
    QDate yearEnd;                 // DATK
    bool useTimetable = false;     // Uroki: the journals work from the lessons
    bool autoSaveGrades = false;   // AvtSave
    bool askWorkingDate = false;   // LockOR: ask for the working date when loading
    int hoursPerLesson = 1;        // MNJ: hours that one lesson counts

    friend bool operator==(const SettingsRow&, const SettingsRow&) = default;
};

inline constexpr int kMostHoursPerLesson = 6;

// Characters that a text field of RASP holds, by the field's name. Requires a text field.
int settingsTextLimit(std::string_view field);

// Why the row may not be stored: a Russian sentence, nothing when it may.
std::optional<QString> settingsProblem(const SettingsRow& row);

// Throws jet::Error. A file without the row gives the defaults above.
SettingsRow readSettingsRow(jet::Database& database);
// Stores every field; an empty text is stored as "нет". Throws jet::Error.
void writeSettingsRow(jet::Database& database, const SettingsRow& row);

} // namespace data
