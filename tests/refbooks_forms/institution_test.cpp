#include "tests/refbooks_forms/recorddialog.h"
#include "tests/support/outsidecheckers.h"

using namespace Qt::StringLiterals;
using namespace refbooks;

namespace {

std::string exported(const QString& file, const std::string& table)
{
    return jet::test::mdbtools("mdb-export",
                               {"-H", "-Q", "-D", "%d.%m.%Y", file.toStdString(), table})
        .value_or("");
}

// The columns of every row whose numbers are given, counted from 0, each row a line.
std::string columns(const std::string& csv, const std::vector<int>& numbers)
{
    QStringList lines;
    for (const QString& line : QString::fromStdString(csv).split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList cells = line.split(u',');
        QStringList chosen;
        for (const int number : numbers)
            chosen << cells.value(number);
        lines << chosen.join(u'|');
    }
    return lines.join(u'\n').toStdString();
}

class Institution : public RecordDialog
{
protected:
    void enter(Book book, const QString& keys)
    {
        open(book);
        type(keys + u'\n');
        EXPECT_TRUE(accepted()) << dialog->windowTitle().toStdString();
    }
    // Where the column stands in the table.
    int place(const std::string& table, std::string_view field)
    {
        const auto& fields = session.database().tableDef(table).fields;
        const auto found = std::ranges::find(fields, field, &jet::Field::name);
        return static_cast<int>(found - fields.begin());
    }
    std::string outside(const std::string& table, const std::vector<std::string_view>& fields)
    {
        std::vector<int> places;
        for (const auto& field : fields)
            places.push_back(place(table, field));
        return columns(exported(journal.path(), table), places);
    }
};

// A new file, a whole chain of books filled by keys alone, then read by another program.
TEST_F(Institution, IsEnteredFromNothing)
{
    enter(Book::Specialities, u"09.02.07\tИнформационные системы\tИС"_s);
    enter(Book::Specialities, u"38.02.01\tЭкономика\tЭК"_s);
    enter(Book::Teachers, u"17\tЗайцева О.П.\tкаб. 5"_s);
    enter(Book::Teachers, u"\tАрхипов Н.А."_s);
    enter(Book::Groups, u"ис\t2\tИС-21\tархип"_s);
    enter(Book::Groups, u"эк\t1\tЭК-11"_s);
    enter(Book::Disciplines, u"ОП.01\tМатематика\tВысшая математика"_s);
    enter(Book::Disciplines, u"\tФизика"_s);
    enter(Book::Students, u"Ёжиков\tПётр\tИльич\tис-21\t2\t\t7.3.2008"_s);
    enter(Book::Students, u"Аист\tЯна\t\tэк-11"_s);
    enter(Book::Workload, u"зай\tис-21\t2\tмат\t72\t1.9.25\t"_s);
    enter(Book::Workload, u"архипов н.а.\tэк-11\t\tфизика\t34"_s);
    session.closeJournal();

    const auto errors = jet::test::structuralErrors(journal.path().toStdString());
    EXPECT_EQ(errors.value_or(""), "");
    if (!jet::test::mdbtools("mdb-ver", {journal.path().toStdString()}))
        GTEST_SKIP() << "mdbtools are not here";
    reopen();
    EXPECT_EQ(outside("SPGRUP", {"NAIM", "KURS", "IDO", "IDP"}), "ИС-21|2|1|2\nЭК-11|1|2|");
    EXPECT_EQ(outside("SPSTUD", {"FAM", "IM", "OTCH", "IDG", "IDGG"}),
              "Ёжиков|Пётр|Ильич|1|2\nАист|Яна||2|");
    EXPECT_EQ(outside("SPNAGR", {"IDP", "IDG", "IDGG", "IDD", "CHSEM"}), "1|1|2|1|72\n2|2|0|2|34");
    EXPECT_EQ(outside("SPPREP", {"FAMIO", "TABNOM"}), "Зайцева О.П.|17\nАрхипов Н.А.|");
    EXPECT_EQ(outside("SPPRED", {"NAIM", "KOD", "MEMO"}),
              "Математика|ОП.01|Высшая математика\nФизика||");
}

} // namespace
