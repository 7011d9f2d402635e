#pragma once

#include "journals/keys.h"

#include <QDate>
#include <QString>

#include <optional>

namespace jet {
class Database;
}

namespace journals {

// Who the head of an entry dialog names.
struct StudentHead
{
    StudentId id{};
    QString name; // surname, first name, patronymic
    GroupId group{};
    QString groupName;
    int subgroup = 0; // 0 belongs to the undivided group
};

// Nothing when there is no such student or his group is gone. Throws jet::Error.
std::optional<StudentHead> readStudentHead(jet::Database& database, StudentId student);

// How a step of the journal is called in the menu: "пропуск, Иванов И. И., 12.11".
QString stepText(const QString& what, const QString& fullName, QDate date);
// "пропуски, 5 ячеек".
QString cellsStepText(const QString& what, int cells);

} // namespace journals
