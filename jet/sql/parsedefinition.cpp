#include "jet/error.h"
#include "jet/sql/columntypes.h"
#include "jet/sql/nesting.h"
#include "jet/sql/parser.h"
#include "jet/text.h"

#include <algorithm>
#include <array>

namespace jet::sql {

namespace {

constexpr std::string_view kPrimaryName = "PrimaryKey";

int attributesOf(const ColumnType& type)
{
    switch (type.type) {
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Binary:
    case FieldType::LongBinary:
        return attribute::kVariable;
    default:
        return attribute::kFixed | (type.counter ? attribute::kAutoIncrement : 0);
    }
}

void makePrimary(Index& index)
{
    index.primary = index.unique = index.required = true;
}

// A name that no other index of the table has: the wish, or the wish with a number.
std::string freeName(std::string_view wish, const std::vector<Index>& taken)
{
    std::string name(wish);
    for (int number = 1;
         std::ranges::any_of(taken, [&](const Index& index) { return sameName(index.name, name); });
         ++number)
        name = std::string(wish) + std::to_string(number);
    return name;
}

} // namespace

void Parser::refuse(const std::string& what) const
{
    throw Error(Fault::Unsupported, what + " не поддерживается");
}

Statement Parser::create()
{
    if (m_tokens.acceptWord("TABLE"))
        return createTable();
    const bool unique = m_tokens.acceptWord("UNIQUE");
    if (!m_tokens.acceptWord("INDEX"))
        m_tokens.failExpecting(unique ? "INDEX" : "TABLE или INDEX");
    return createIndex(unique);
}

CreateTable Parser::createTable()
{
    CreateTable result;
    result.definition.name = m_tokens.expectName("имя таблицы");
    m_tokens.expectSymbol("(");
    do
        tableElement(result.definition);
    while (m_tokens.acceptSymbol(","));
    m_tokens.expectSymbol(")");
    return result;
}

// A constraint word is the name of a column when no constraint can follow it.
bool Parser::isTableConstraint() const
{
    const auto begins = [this](std::size_t at) {
        return (m_tokens.isWord("PRIMARY", at) && m_tokens.isWord("KEY", at + 1))
               || (m_tokens.isWord("UNIQUE", at) && m_tokens.isSymbol("(", at + 1))
               || (m_tokens.isWord("FOREIGN", at) && m_tokens.isWord("KEY", at + 1));
    };
    return begins(0) || (m_tokens.isWord("CONSTRAINT") && begins(2));
}

void Parser::tableElement(TableDef& table)
{
    if (!isTableConstraint()) {
        Field field = columnDefinition(table.indexes);
        field.ordinal = static_cast<int>(table.fields.size());
        table.fields.push_back(std::move(field));
        return;
    }
    Index index = tableConstraint();
    if (index.name.empty())
        index.name =
            freeName(index.primary ? kPrimaryName : index.fields.front().name, table.indexes);
    table.indexes.push_back(std::move(index));
}

Index Parser::tableConstraint()
{
    Index result;
    if (m_tokens.acceptWord("CONSTRAINT"))
        result.name = m_tokens.expectName("имя ограничения");
    if (m_tokens.acceptWord("PRIMARY")) {
        m_tokens.expectWord("KEY");
        makePrimary(result);
    } else if (m_tokens.acceptWord("UNIQUE")) {
        result.unique = true;
    } else if (m_tokens.isWord("FOREIGN") || m_tokens.isWord("REFERENCES")) {
        refuse("создание связей между таблицами (REFERENCES)");
    } else {
        m_tokens.failExpecting("PRIMARY KEY или UNIQUE");
    }
    result.fields = indexFields();
    return result;
}

Field Parser::columnDefinition(std::vector<Index>& indexes)
{
    Field field;
    field.name = m_tokens.expectName("имя поля");
    columnType(field);
    while (columnOption(field, indexes)) {
    }
    return field;
}

void Parser::columnType(Field& field)
{
    const Token word = m_tokens.peek();
    const ColumnType* type = word.kind == TokenKind::Word ? findColumnType(word.text) : nullptr;
    if (!type)
        m_tokens.failExpecting("тип поля «" + field.name + "»");
    m_tokens.next();
    int size = type->defaultSize;
    if (type->greatestSize > 0)
        size = sizeInBrackets(1, type->greatestSize, type->defaultSize);
    field.type = type->type;
    field.size = fieldSize(type->type, size);
    field.attributes = attributesOf(*type);
}

int Parser::sizeInBrackets(int least, int most, int otherwise)
{
    if (!m_tokens.acceptSymbol("("))
        return otherwise;
    const Token size = m_tokens.next();
    const std::int64_t* value = size.value.as<std::int64_t>();
    if (size.kind != TokenKind::Number || !value || *value < least || *value > most)
        m_tokens.fail(size.place, "размер поля должен быть от " + std::to_string(least) + " до "
                                      + std::to_string(most));
    m_tokens.expectSymbol(")");
    return static_cast<int>(*value);
}

bool Parser::columnOption(Field& field, std::vector<Index>& indexes)
{
    if (m_tokens.acceptWord("NOT")) {
        m_tokens.expectWord("NULL");
        field.required = true;
    } else if (m_tokens.acceptWord("NULL")) {
        field.required = false;
    } else if (m_tokens.acceptWord("DEFAULT")) {
        const std::size_t begin = m_tokens.peek().place;
        arithmetic(0);
        std::string text(m_tokens.sql().substr(begin, m_tokens.peek().place - begin));
        text.erase(text.find_last_not_of(" \t\r\n") + 1);
        field.defaultValue = std::move(text);
    } else if (m_tokens.isWord("CONSTRAINT") || m_tokens.isWord("PRIMARY")
               || m_tokens.isWord("UNIQUE") || m_tokens.isWord("REFERENCES")) {
        columnConstraint(field, indexes);
    } else {
        return false;
    }
    return true;
}

void Parser::columnConstraint(const Field& field, std::vector<Index>& indexes)
{
    Index index;
    index.fields.push_back({field.name, false});
    if (m_tokens.acceptWord("CONSTRAINT"))
        index.name = m_tokens.expectName("имя ограничения");
    if (m_tokens.acceptWord("PRIMARY")) {
        m_tokens.expectWord("KEY");
        makePrimary(index);
    } else if (m_tokens.acceptWord("UNIQUE")) {
        index.unique = true;
    } else if (m_tokens.isWord("REFERENCES")) {
        refuse("создание связей между таблицами (REFERENCES)");
    } else {
        m_tokens.failExpecting("PRIMARY KEY или UNIQUE");
    }
    if (index.name.empty())
        index.name = freeName(index.primary ? kPrimaryName : std::string_view(field.name), indexes);
    indexes.push_back(std::move(index));
}

std::vector<IndexField> Parser::indexFields()
{
    std::vector<IndexField> result;
    m_tokens.expectSymbol("(");
    do {
        IndexField field;
        field.name = m_tokens.expectName("имя поля индекса");
        field.descending = m_tokens.acceptWord("DESC");
        if (!field.descending)
            m_tokens.acceptWord("ASC");
        result.push_back(std::move(field));
    } while (m_tokens.acceptSymbol(","));
    m_tokens.expectSymbol(")");
    return result;
}

CreateIndex Parser::createIndex(bool unique)
{
    CreateIndex result;
    result.index.unique = unique;
    result.index.name = m_tokens.expectName("имя индекса");
    m_tokens.expectWord("ON");
    result.table = m_tokens.expectName("имя таблицы");
    result.index.fields = indexFields();
    if (m_tokens.acceptWord("WITH"))
        indexOptions(result.index);
    return result;
}

void Parser::indexOptions(Index& index)
{
    if (m_tokens.acceptWord("PRIMARY")) {
        makePrimary(index);
    } else if (m_tokens.acceptWord("DISALLOW")) {
        m_tokens.expectWord("NULL");
        index.required = true;
    } else if (m_tokens.acceptWord("IGNORE")) {
        m_tokens.expectWord("NULL");
        index.ignoreNulls = true;
    } else {
        m_tokens.failExpecting("PRIMARY, DISALLOW NULL или IGNORE NULL");
    }
}

Statement Parser::alter()
{
    m_tokens.expectWord("TABLE");
    std::string table = m_tokens.expectName("имя таблицы");
    if (m_tokens.acceptWord("DROP")) {
        if (m_tokens.isWord("CONSTRAINT") && m_tokens.isName(1)) {
            m_tokens.next();
            return DropIndex{std::move(table), m_tokens.expectName("имя индекса")};
        }
        if (m_tokens.isWord("COLUMN") && m_tokens.isName(1))
            m_tokens.next();
        return DropColumn{std::move(table), m_tokens.expectName("имя поля")};
    }
    if (m_tokens.isWord("ALTER"))
        refuse("изменение типа поля (ALTER COLUMN)");
    if (!m_tokens.acceptWord("ADD"))
        m_tokens.failExpecting("ADD или DROP");
    if (isTableConstraint()) {
        Index index = tableConstraint();
        if (index.name.empty())
            index.name = index.primary ? std::string(kPrimaryName) : index.fields.front().name;
        return CreateIndex{std::move(table), std::move(index)};
    }
    // A column may be called COLUMN: ADD COLUMN INTEGER.
    if (m_tokens.isWord("COLUMN") && m_tokens.isName(2))
        m_tokens.next();
    std::vector<Index> indexes;
    AddColumn result{std::move(table), columnDefinition(indexes), std::nullopt};
    if (indexes.size() > 1)
        refuse("больше одного ограничения у нового поля");
    if (!indexes.empty())
        result.index = std::move(indexes.front());
    return result;
}

Statement Parser::drop()
{
    if (m_tokens.acceptWord("TABLE"))
        return DropTable{m_tokens.expectName("имя таблицы")};
    if (!m_tokens.acceptWord("INDEX"))
        m_tokens.failExpecting("TABLE или INDEX");
    std::string index = m_tokens.expectName("имя индекса");
    m_tokens.expectWord("ON");
    return DropIndex{m_tokens.expectName("имя таблицы"), std::move(index)};
}

} // namespace jet::sql
