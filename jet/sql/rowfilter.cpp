#include "jet/sql/rowfilter.h"

#include "jet/storage/sortkey.h"

namespace jet::sql {

namespace {

template <class Type>
int compare(Type a, Type b)
{
    return a < b ? -1 : a > b ? 1 : 0;
}

bool isWhole(FieldType type)
{
    return type == FieldType::Boolean || type == FieldType::Byte || type == FieldType::Integer
           || type == FieldType::Long;
}

} // namespace

RowFilter::RowFilter(const PlanTerm& term, const ColumnDefinition& column, sqlite3_value* value)
    : m_op(term.op)
    , m_position(term.position)
{
    const FieldType type = column.type();
    const int kind = sqlite3_value_type(value);
    if (m_op == SQLITE_INDEX_CONSTRAINT_ISNULL)
        m_test = Test::IsNull;
    else if (m_op == SQLITE_INDEX_CONSTRAINT_ISNOTNULL)
        m_test = Test::IsNotNull;
    else if (kind == SQLITE_NULL)
        m_test = Test::Never; // nothing compares with NULL
    else if (kind == SQLITE_BLOB)
        m_test = Test::Always; // SQLite decides
    else if (type == FieldType::Text || type == FieldType::Memo)
        compareText(value);
    else
        compareNumber(type, value);
}

// Beside a number SQLite compares either as texts or as numbers, and does not say how.
void RowFilter::compareText(sqlite3_value* value)
{
    if (sqlite3_value_type(value) != SQLITE_TEXT)
        return;
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    if (!text)
        return;
    m_test = Test::Text;
    m_text.assign(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

// A fraction beside whole numbers and a text that is no number are rare: SQLite decides.
void RowFilter::compareNumber(FieldType type, sqlite3_value* value)
{
    const auto compared = comparedNumber(value);
    if (!compared || (isWhole(type) && !compared->whole))
        return;
    m_test = isWhole(type) ? Test::Integer : Test::Number;
    m_integer = compared->integer;
    m_number = compared->number;
}

bool RowFilter::holds(int order) const
{
    switch (m_op) {
    case SQLITE_INDEX_CONSTRAINT_EQ:
        return order == 0;
    case SQLITE_INDEX_CONSTRAINT_NE:
        return order != 0;
    case SQLITE_INDEX_CONSTRAINT_LT:
        return order < 0;
    case SQLITE_INDEX_CONSTRAINT_LE:
        return order <= 0;
    case SQLITE_INDEX_CONSTRAINT_GT:
        return order > 0;
    case SQLITE_INDEX_CONSTRAINT_GE:
        return order >= 0;
    default:
        return true;
    }
}

bool RowFilter::accepts(const RowView& row, std::string& buffer) const
{
    if (m_test == Test::Always)
        return true;
    const bool null = row.isNull(m_position);
    if (m_test == Test::IsNull || null)
        return null == (m_test == Test::IsNull);
    switch (m_test) {
    case Test::IsNotNull:
        return true;
    case Test::Integer:
        return holds(compare(row.integer(m_position), m_integer));
    case Test::Number:
        return holds(compare(row.number(m_position), m_number));
    case Test::Text:
        buffer.clear();
        row.text(m_position, buffer);
        return holds(compareGeneral(buffer, m_text));
    default:
        return false;
    }
}

} // namespace jet::sql
