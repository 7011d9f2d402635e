#pragma once

#include "refbooks/recordfields.h"

#include <cstdint>

namespace refbooks {

enum class RecordMode { New, Copy, Edit };

// A record while it is edited: the fields of its book, what they hold, and the rows of their
// drop-down lists. The three vectors have an element for each field.
struct RecordDraft
{
    Book book = Book::Workload;
    RecordMode mode = RecordMode::New;
    std::int64_t key = 0; // of the row edited or copied
    std::vector<RecordField> fields = {};
    std::vector<FieldValue> values = {};
    std::vector<Choices> choices = {}; // empty but for drop-down lists

    // The first field of that name in the table. Requires that the book has it.
    int position(std::string_view field) const;
    const FieldValue& value(std::string_view field) const;
    FieldValue& value(std::string_view field);
    // The text as it is stored: without blanks around, but for passwords.
    QString text(int field) const;
    QString text(std::string_view field) const { return text(position(field)); }
    int choice(std::string_view field) const { return value(field).choice.value_or(0); }
    // Whether the drop-down list shows a row as chosen.
    bool isChosen(int field) const;
    // That row's text.
    QString choiceText(std::string_view field) const;
    // A second password is only compared.
    bool isStored(int field) const;
};

} // namespace refbooks
