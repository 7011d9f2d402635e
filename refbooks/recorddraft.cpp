#include "refbooks/recorddraft.h"

#include <algorithm>
#include <cassert>

namespace refbooks {

int RecordDraft::position(std::string_view field) const
{
    const auto found = std::ranges::find(fields, field, &RecordField::field);
    assert(found != fields.end());
    return static_cast<int>(found - fields.begin());
}

const FieldValue& RecordDraft::value(std::string_view field) const
{
    return values[static_cast<std::size_t>(position(field))];
}

FieldValue& RecordDraft::value(std::string_view field)
{
    return values[static_cast<std::size_t>(position(field))];
}

QString RecordDraft::text(int field) const
{
    const auto at = static_cast<std::size_t>(field);
    return fields[at].kind == FieldKind::Password ? values[at].text : values[at].text.trimmed();
}

QString RecordDraft::choiceText(std::string_view field) const
{
    const auto& list = choices[static_cast<std::size_t>(position(field))];
    const int row = positionOf(list, value(field).choice);
    return row < 0 ? QString() : list[static_cast<std::size_t>(row)].text;
}

bool RecordDraft::isChosen(int field) const
{
    const auto at = static_cast<std::size_t>(field);
    return values[at].choice && positionOf(choices[at], values[at].choice) >= 0;
}

bool RecordDraft::isStored(int field) const
{
    return position(fields[static_cast<std::size_t>(field)].field) == field;
}

} // namespace refbooks
