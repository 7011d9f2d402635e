// The reference rows: what counts as the same row, what is brought up to date, which keys they get.

#include "tests/import/importfixture.h"

using imports::Book;
using imports::RowCounts;

namespace {

class BooksImport : public ImportFixture
{};

} // namespace

TEST_F(BooksImport, RowsGetTheJournalsOwnKeys)
{
    // Keys of the journal are ahead of those of the timetable.
    journal.database().insert("SPPREP", {{{"FAMIO", "Прежний П.П."}}});
    journal.group("ИС-21"); // of no speciality, so another group
    journal.discipline("Химия");
    TimetableFile source;
    const auto place = source.place();
    source.add("SPTIPZ", {{"NAIM", "Лекция"}, {"MEMO", "л"}});
    source.add("SPGRUP", {{"NAIM", "Без куратора"}, {"KURS", 1}, {"IDP", 77}});
    source.lesson(place, {2024, 10, 7}, 3);
    const auto counts = import(source.path());
    EXPECT_EQ(rows("SELECT SOKR, NAIM FROM SPOTD"), Lines{"ИС Системы"});
    EXPECT_EQ(rows("SELECT IDP, FAMIO FROM SPPREP"), (Lines{"1 Прежний П.П.", "2 Белов А.А."}));
    EXPECT_EQ(rows("SELECT IDG, IDO, KURS, NAIM, IDP FROM SPGRUP"),
              (Lines{"1 - - ИС-21 -", "2 1 2 ИС-21 -", "3 - 1 Без куратора -"}));
    EXPECT_EQ(rows("SELECT IDP, IDG, IDGG, IDD, CHSEM, IDNN FROM SPNAGR"), Lines{"2 2 - 2 - -"});
    EXPECT_EQ(rows("SELECT NAIM, MEMO FROM SPTIPZ"), Lines{"Лекция л"});
    EXPECT_EQ(rows("SELECT DAT, UR, IDP, IDG, IDGG, IDD, IDN, IDR, ZP, MORE, HAND FROM UROKI"),
              Lines{"07.10.2024 3 2 2 - 2 1 0 0 0 0"});
    EXPECT_EQ(of(counts, Book::Groups), (RowCounts{.added = 2}));
}

TEST_F(BooksImport, NamesDecideWhichRowIsMeant)
{
    journal.database().insert("SPOTD", {{{"SOKR", "ИС"}, {"NAIM", "Системы"}, {"KOD", "01"}}});
    journal.database().insert("SPPREP", {{{"FAMIO", "Белов А.А."}, {"TABNOM", "5"}}});
    journal.database().insert("SPPREP", {{{"FAMIO", "Белов А.А."}, {"TABNOM", "6"}}}); // namesake
    journal.database().insert("SPTIPZ", {{{"NAIM", "Лекция"}}});
    journal.database().insert("SPPRED", {{{"NAIM", "Физика"}, {"KOD", "Ф"}, {"MEMO", "старая"}}});
    journal.database().insert(
        "SPGRUP", {{{"IDO", 1}, {"KURS", 2}, {"NAIM", "ИС-21"}, {"IDP", 2}, {"MEMO", "м"}}});
    TimetableFile source;
    source.add("SPOTD", {{"SOKR", "ис"}, {"NAIM", "СИСТЕМЫ"}, {"KOD", "09"}}); // case is no matter
    source.add("SPOTD", {{"SOKR", "ИС"}, {"NAIM", "Системы связи"}});
    source.add("SPOTD", {{"SOKR", "И"}, {"NAIM", "Системы"}});
    source.add("SPPREP", {{"FAMIO", "БЕЛОВ а.а."}, {"TABNOM", "7"}, {"MEMO", "зам."}});
    source.add("SPPREP", {{"FAMIO", "Белов А.Б."}});
    source.add("SPPREP", {{"FAMIO", "Белов А.А. \"мл.\" #1"}}); // ordinary names
    source.add("SPTIPZ", {{"NAIM", "лекция"}, {"MEMO", "л"}});
    source.add("SPPRED", {{"NAIM", "Физика"}, {"KOD", "Ф"}, {"MEMO", "старая"}});
    source.add("SPPRED", {{"NAIM", "Физика "}}); // blanks at the end do not count; NULL is told
    source.add("SPGRUP", {{"IDO", 1}, {"KURS", 2}, {"NAIM", "ис-21"}, {"IDP", 2}, {"MEMO", "н"}});
    source.add("SPGRUP", {{"IDO", 1}, {"KURS", 3}, {"NAIM", "ИС-21"}});
    source.add("SPGRUP", {{"IDO", 2}, {"KURS", 2}, {"NAIM", "ИС-21"}});
    source.add("SPGRUP", {{"IDO", 1}, {"KURS", 2}, {"NAIM", "ИС-22"}});
    const auto counts = import(source.path());
    EXPECT_EQ(rows("SELECT IDO, SOKR, NAIM, KOD FROM SPOTD"),
              (Lines{"1 ИС Системы 09", "2 ИС Системы связи -", "3 И Системы -"}));
    EXPECT_EQ(rows("SELECT FAMIO, TABNOM, MEMO FROM SPPREP"),
              (Lines{"Белов А.А. 7 зам.", "Белов А.А. 6 -", "Белов А.Б. - -",
                     "Белов А.А. \"мл.\" #1 - -"}));
    EXPECT_EQ(rows("SELECT NAIM, MEMO FROM SPTIPZ"), Lines{"Лекция л"});
    EXPECT_EQ(rows("SELECT NAIM, KOD, MEMO FROM SPPRED"), Lines{"Физика - -"});
    EXPECT_EQ(rows("SELECT IDO, KURS, NAIM, IDP, MEMO FROM SPGRUP"),
              (Lines{"1 2 ИС-21 3 н", "1 3 ИС-21 - -", "2 2 ИС-21 - -", "1 2 ИС-22 - -"}));
    EXPECT_EQ(of(counts, Book::Teachers), (RowCounts{.added = 2, .updated = 1}));
    EXPECT_EQ(of(import(source.path()), Book::Groups), (RowCounts{.unchanged = 4}));
}

TEST_F(BooksImport, WorkloadIsMatchedByPlaceAndLinksAreTranslated)
{
    // The second timetable row of a place brings the journal's row up to date.
    for (const char* name : {"А", "Б"})
        journal.database().insert("SPPREP", {{{"FAMIO", name}}}); // moves the keys on
    TimetableFile source;
    const auto first = source.place();
    const auto second = source.place(" 2");
    const auto day = [](int month) { return data::toJet(QDate(2020, month, 1)); };
    const auto workload = [&](const TimetableFile::Place& at, const jet::Value& subgroup, int hours,
                              const jet::Value& link, bool dated = true) {
        jet::Value begin;
        if (dated)
            begin = day(1);
        return source.add("SPNAGR", {{"IDP", at.teacher},
                                     {"IDG", at.group},
                                     {"IDD", at.discipline},
                                     {"IDGG", subgroup},
                                     {"CHSEM", hours},
                                     {"DATNN", begin},
                                     {"DATKK", day(2)},
                                     {"IDNN", link}});
    };
    ASSERT_EQ(second.workload, 2);
    workload(first, 1, 10, 3);          // 3: linked to itself
    workload(first, 2, 11, 3);          // 4: linked to 3
    workload(second, 1, 12, 99);        // 5: linked to a row that is not there
    workload(second, 2, 13, {}, false); // 6: no date, so not imported
    workload(second, 0, 14, 2);         // 7: the place of 2, to which it is linked
    workload({first.teacher, 9, first.discipline, 0}, 0, 15, 0); // 8: of no group
    workload(first, 3, 16, 6); // 9: linked to the row not imported
    source.database().execute("UPDATE SPNAGR SET IDNN = 7 WHERE IDN = 1");
    const auto counts = import(source.path());
    const Lines expected = {
        // by link: row 2 has none, then 7, 3, 4, 9, 1, 5
        "1 4 2 - 2 14 1", "2 3 1 1 1 10 2", "3 3 1 2 1 11 2",
        "4 3 1 3 1 16 0", "5 3 1 - 1 - 1",  "6 4 2 1 2 12 0",
    };
    EXPECT_EQ(rows("SELECT IDN, IDP, IDG, IDGG, IDD, CHSEM, IDNN FROM SPNAGR"), expected);
    EXPECT_EQ(of(counts, Book::Workload), (RowCounts{.added = 6}));
    EXPECT_EQ(of(import(source.path()), Book::Workload), (RowCounts{.unchanged = 6}));
    EXPECT_EQ(rows("SELECT IDN, IDP, IDG, IDGG, IDD, CHSEM, IDNN FROM SPNAGR"), expected);
    journal.database().execute("UPDATE SPNAGR SET CHSEM = 1, IDNN = 0 WHERE IDN < 4");
    EXPECT_EQ(of(import(source.path()), Book::Workload), (RowCounts{.updated = 3, .unchanged = 3}));
}

TEST_F(BooksImport, FieldsThatTheTimetableLacksStayAsTheyAre)
{
    journal.database().insert("SPOTD", {{{"SOKR", "ИС"}, {"NAIM", "Системы"}, {"KOD", "01"}}});
    journal.database().insert("SPPREP", {{{"FAMIO", "Белов А.А."}, {"MEMO", "м"}}});
    journal.database().insert("SPGRUP", {{{"IDO", 1}, {"KURS", 2}, {"NAIM", "ИС-21"}, {"IDP", 1}}});
    TimetableFile source({"SPOTD.KOD", "SPPREP.MEMO", "SPPREP.TABNOM", "SPGRUP.IDP", "SPNAGR.IDGG",
                          "SPNAGR.IDNN", "SPNAGR.DATKK", "UROKI.ZP"});
    const int discipline = source.add("SPPRED", {{"NAIM", std::string(255, 'x')}});
    const std::string longNote = "0123456789012345678901234567890123456789012345678901234";
    const int speciality = source.add("SPOTD", {{"SOKR", "ИС"}, {"NAIM", "Системы"}});
    const int teacher = source.add("SPPREP", {{"FAMIO", "Белов А.А."}});
    const int group = source.add("SPGRUP", {{"IDO", speciality}, {"KURS", 2}, {"NAIM", "ИС-21"}});
    source.database().execute("ALTER TABLE SPTIPZ DROP COLUMN MEMO");
    source.database().execute("ALTER TABLE SPTIPZ ADD COLUMN MEMO MEMO");
    source.add("SPTIPZ", {{"NAIM", "Лекция"}, {"MEMO", longNote + longNote + longNote}});
    source.add("SPNAGR", {{"IDP", teacher},
                          {"IDG", group},
                          {"IDD", discipline},
                          {"DATNN", data::toJet(QDate(2024, 9, 1))}});
    const auto counts = import(source.path());
    EXPECT_EQ(rows("SELECT KOD FROM SPOTD"), Lines{"01"});
    EXPECT_EQ(rows("SELECT MEMO FROM SPPREP"), Lines{"м"});
    EXPECT_EQ(rows("SELECT IDP FROM SPGRUP"), Lines{"1"});
    EXPECT_EQ(rows("SELECT COUNT(*) FROM SPNAGR"), Lines{"1"});
    EXPECT_EQ(rows("SELECT LEN(MEMO) FROM SPTIPZ"), Lines{"150"});
    EXPECT_EQ(counts.shortened, 1);
}
