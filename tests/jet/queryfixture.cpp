#include "tests/jet/queryfixture.h"

namespace jet::test {

namespace {

Field field(std::string name, FieldType type, int size = 0)
{
    Field f;
    f.name = std::move(name);
    f.type = type;
    f.size = fieldSize(type, size);
    f.allowZeroLength = type == FieldType::Text || type == FieldType::Memo;
    const bool variable = type == FieldType::Text || type == FieldType::Memo;
    f.attributes = variable ? attribute::kVariable : attribute::kFixed;
    return f;
}

Field counter(std::string name)
{
    Field f = field(std::move(name), FieldType::Long);
    f.attributes |= attribute::kAutoIncrement;
    return f;
}

Index key(std::string column)
{
    Index index{"PrimaryKey", {{std::move(column)}}};
    index.primary = index.unique = index.required = true;
    return index;
}

Index unique(std::string column)
{
    Index index{"by" + column, {{column}}};
    index.unique = true;
    return index;
}

TableDef table(std::string name, std::vector<Field> fields, std::vector<Index> indexes)
{
    TableDef definition;
    definition.name = std::move(name);
    definition.fields = std::move(fields);
    for (std::size_t i = 0; i < definition.fields.size(); ++i)
        definition.fields[i].ordinal = static_cast<int>(i);
    definition.indexes = std::move(indexes);
    return definition;
}

} // namespace

void makeCollegeTables(Database& database)
{
    using enum FieldType;
    database.createTable(table(
        "SPGRUP", {counter("IDG"), field("NAIM", Text, 20), field("KURS", Byte)}, {key("IDG")}));
    database.createTable(
        table("SPSTUD",
              {counter("ID"), field("IDG", Long), field("FAM", Text, 50), field("IM", Text, 50),
               field("D_R", Date), field("POL", Boolean), field("IDGG", Integer),
               field("prikazOtch", Text, 50), field("NOM", Long), field("MEMO", Memo)},
              {key("ID"), unique("NOM")}));
    database.createTable(table("POS",
                               {field("ID", Long), field("DAT", Date), field("UR", Integer),
                                field("UV", Single), field("NUV", Double), field("SUM", Currency)},
                               {}));
}

QueryTest::QueryTest()
    : db(Database::create(files, kPath, {}))
{
    makeCollegeTables(*db);
    const char* const statements[] = {
        R"(INSERT INTO SPGRUP (NAIM, KURS) VALUES ("ПО-21", 2))",
        R"(INSERT INTO SPGRUP (NAIM, KURS) VALUES ("ЭК-11", 1))",
        R"(INSERT INTO SPSTUD (IDG, FAM, IM, D_R, POL, IDGG, prikazOtch, NOM)
           VALUES (1, "Семёнов", "Пётр", #03/05/2003#, True, 1, "", 101))",
        R"(INSERT INTO SPSTUD (IDG, FAM, IM, D_R, POL, NOM)
           VALUES (1, "Иванова", "Анна", #12/31/2002#, False, 102))",
        R"(INSERT INTO SPSTUD (IDG, FAM, IM, POL, IDGG, NOM)
           VALUES (1, "семенов", "Яков", True, 2, 103))",
        R"(INSERT INTO SPSTUD (IDG, FAM, IM, prikazOtch, NOM)
           VALUES (2, "Ёлкина", "Ева", "12-к", 104))",
        R"(INSERT INTO SPSTUD (IDG, FAM, IM, NOM) VALUES (2, "Ежов", "Лев", 105))",
        "INSERT INTO POS (ID, DAT, UR, UV, NUV, SUM) VALUES (1, #09/01/2020#, 1, 2, 0, 1.5)",
        "INSERT INTO POS (ID, DAT, UR, UV, NUV, SUM) VALUES (1, #09/02/2020#, 2, 0, 2, 2.25)",
        "INSERT INTO POS (ID, DAT, UR, UV, NUV) VALUES (2, #09/01/2020#, 1, 0, 2)",
        "INSERT INTO POS (ID, DAT, UR, NUV) VALUES (4, #10/01/2020#, 1, 4)",
    };
    for (const char* statement : statements)
        execute(statement);
}

void QueryTest::reopen(OpenMode mode)
{
    db.reset();
    db = Database::open(files, kPath, mode);
}

std::string QueryTest::rows(std::string_view sql)
{
    std::string out;
    for (const auto& row : db->rows(sql)) {
        out += out.empty() ? "" : "; ";
        for (std::size_t i = 0; i < row.size(); ++i)
            out += (i == 0 ? "" : "|") + (row[i].isNull() ? "-" : row[i].toText());
    }
    return out;
}

Fault QueryTest::faultOf(std::string_view sql, std::string* message)
{
    try {
        if (sql.starts_with("SELECT"))
            ADD_FAILURE() << sql << " gives " << rows(sql);
        else
            ADD_FAILURE() << sql << " changes " << execute(sql);
    } catch (const Error& error) {
        if (message)
            *message = error.what();
        return error.fault();
    }
    return Fault::NotFound;
}

} // namespace jet::test
