#pragma once

#include "jet/tabledef.h"

#include <QDate>
#include <QString>

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What a journal file consists of, as one table of definitions: creating, checking and
// upgrading a file all read it. Lists are append-only, since older files are judged by them.
namespace data {

struct FieldDefinition
{
    std::string_view name;
    jet::FieldType type;
    int size; // as DAO gives it: characters for Text, bytes otherwise, 0 for Memo
    int attributes;
};

struct IndexDefinition
{
    std::string_view name;
    std::string_view fields; // "+IDE", or "-DAT;+UR" for several
};

struct TableDefinition
{
    std::string_view name;
    std::vector<FieldDefinition> fields;
    std::vector<IndexDefinition> indexes;

    // Requires that the table defines it.
    const FieldDefinition& field(std::string_view fieldName) const;
};

struct FieldName
{
    std::string_view table;
    std::string_view field;
    friend bool operator==(const FieldName&, const FieldName&) = default;
};

struct AddedField
{
    FieldName name;
    jet::Value preset; // stored in every row that is there; NULL leaves them as they are
};

struct SupplementaryField
{
    std::string_view table;
    FieldDefinition field;
};

struct GradeName
{
    int grade; // as stored: 2 to 5, or 1 for the pass mark
    QString name;
};

struct UserRow
{
    QString name;
    int role;
};

// The tables that the check verifies, in the order in which it does.
std::span<const TableDefinition> verifiedTables();
// Fields that older files lack and the upgrade appends.
std::span<const AddedField> addedFields();
// Text fields that older files have in another size and the upgrade rebuilds.
std::span<const FieldName> resizedFields();
bool isAdded(const FieldName& name);
bool isResized(const FieldName& name);

// Tables and fields that the program uses but does not verify; appended where missing.
std::span<const TableDefinition> supplementaryTables();
std::span<const SupplementaryField> supplementaryFields();

// The rows a table starts with.
const std::array<QString, 12>& monthNames();
std::span<const GradeName> gradeNames();
std::span<const UserRow> firstUsers();
std::span<const QString> studyForms();
// The study year of a file that has none.
QDate presetYearBegin();
QDate presetYearEnd();

// Titles of the reference books by book code, 13 empty.
const std::array<QString, 18>& bookTitles();

} // namespace data
