#pragma once

#include "refbooks/catalogue.h"
#include "refbooks/lookups.h"

#include <QDate>
#include <QTime>

#include <optional>
#include <string_view>
#include <vector>

namespace refbooks {

enum class FieldKind {
    Text = 0,
    List = 1,
    CheckBox = 2,
    Date = 3,
    LessonTime = 4, // a text: the lesson's number, or its time as "8:30-10:00"
    Password = 5,   // a text that is not shown
    TimeOfDay = 6,
};

enum class Requirement {
    Optional = 0,
    Required = 1,
    Unique = 2, // required, and in no other row of the book
};

// A field of a record dialog.
struct RecordField
{
    QString caption;        // in the institution's words; "! " in front when required
    std::string_view field; // of the book's table
    FieldKind kind = FieldKind::Text;
    int limit = 0; // the most characters of a text
    Requirement requirement = Requirement::Optional;
    bool wholeNumber = false;
    std::optional<Lookup> lookup = {};
    QString frame = {}; // the frame that begins with this field

    bool isText() const;
    // The caption as messages name it, without "! ".
    QString name() const;
};

// The fields in the dialog's order; the lessons have none. The second password field repeats
// the first and is not stored.
std::vector<RecordField> recordFields(Book book, const shell::Wording& wording);

// What a field's control holds; which part counts follows from its kind. Nothing chosen, an
// invalid date and an invalid time mean an empty field.
struct FieldValue
{
    QString text = {};
    std::optional<int> choice = {};
    bool checked = false;
    QDate date = {};
    QTime time = {};

    friend bool operator==(const FieldValue&, const FieldValue&) = default;
};

} // namespace refbooks
