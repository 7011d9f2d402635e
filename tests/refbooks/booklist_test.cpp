#include "refbooks/booklist.h"

#include "demo/demo.h"
#include "refbooks/bookfilter.h"
#include "refbooks/booklistmodel.h"
#include "shell/settings.h"
#include "shell/wording.h"
#include "tests/support/smalljournal.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace refbooks;

namespace {

const shell::Wording kCollege;
const shell::Wording kSchool(shell::Institution::School);

QStringList headers(const BookList& list)
{
    QStringList result;
    for (const Column& column : list.columns())
        result << column.header;
    return result;
}

QStringList cells(const BookList& list, int row)
{
    QStringList result;
    for (int column = 0; column < static_cast<int>(list.columns().size()); ++column)
        result << list.text(row, column);
    return result;
}

QStringList names(const BookList& list)
{
    QStringList result;
    for (int row = 0; row < list.rowCount(); ++row)
        result << list.name(row);
    return result;
}

int integer(jet::Database& database, const std::string& query)
{
    return static_cast<int>(database.rows(query).at(0).at(0).toInteger());
}

// One institution for the tests that only read.
class DemonstrationLists : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        journal = std::make_unique<SmallJournal>();
        demo::fill(journal->database(), demo::Scale::Small, 1);
    }
    static void TearDownTestSuite() { journal.reset(); }
    static std::unique_ptr<SmallJournal> journal;
};

std::unique_ptr<SmallJournal> DemonstrationLists::journal;

TEST_F(DemonstrationLists, OfEveryBookHaveTheirColumnsAndAllRowsInBothWordings)
{
    auto& database = journal->database();
    database.execute("INSERT INTO HOLI (DAY, MN, NAIM) VALUES (8, 3, \"Праздник\");");
    database.execute("INSERT INTO SPKAUD (KAUDI, TIM1) VALUES (\"101\", #08:30:00#);");
    database.execute("INSERT INTO UR_TIME (IDUR, NAIM) VALUES (99, \"8:30\");");
    for (const auto& wording : {kCollege, kSchool}) {
        for (int code = 0; code < kBookCodes; ++code) {
            if (catalogue()[static_cast<std::size_t>(code)].table.empty())
                continue;
            const auto book = static_cast<Book>(code);
            BookList list(book, wording);
            EXPECT_NO_THROW(list.load(database, {})) << code;
            if (hasFilter(book) || book == Book::Lessons)
                continue;
            EXPECT_EQ(list.rowCount(), database.rowCount(bookInfo(book).table)) << code;
        }
    }
}

TEST_F(DemonstrationLists, ShowWorkloadOnlyOfTheChosenTeacherGroupOrRoom)
{
    auto& database = journal->database();
    BookList list(Book::Workload, kCollege);
    list.load(database, {});
    EXPECT_EQ(list.rowCount(), 0) << "nobody chosen";
    ASSERT_GT(database.rowCount("SPNAGR"), 0);
    const int group = integer(database, "SELECT min(IDG) FROM SPNAGR;");
    list.load(database, {WorkloadKind::ByGroup, group, {}});
    EXPECT_EQ(list.rowCount(), integer(database, "SELECT count(*) FROM SPNAGR WHERE IDG = "
                                                     + std::to_string(group) + ";"));
    const auto row =
        database.rows("SELECT (SELECT FAMIO FROM SPPREP WHERE IDP = SPNAGR.IDP), "
                      "(SELECT NAIM FROM SPGRUP WHERE IDG = SPNAGR.IDG), "
                      "(SELECT NAIM FROM SPPRED WHERE IDD = SPNAGR.IDD), CHSEM, DATNN, DATKK, IDN "
                      "FROM SPNAGR WHERE IDN = "
                      + std::to_string(list.key(0)) + ";");
    const QStringList shown = cells(list, 0);
    const int columns[] = {0, 1, 3, 4, 5, 6, 9};
    for (std::size_t i = 0; i < std::size(columns); ++i)
        EXPECT_EQ(shown[columns[i]].toStdString(), row[0][i].toText()) << i;
    list.load(database, {WorkloadKind::ByRoom, 12345, {}});
    EXPECT_EQ(list.rowCount(), 0);
}

TEST_F(DemonstrationLists, ShowStudentsOfOneGroupByName)
{
    auto& database = journal->database();
    BookList list(Book::Students, kCollege);
    list.load(database, {});
    EXPECT_EQ(list.rowCount(), 0);
    const int group = integer(database, "SELECT min(IDG) FROM SPSTUD;");
    list.load(database, {{}, group, {}});
    const auto expected = database.rows("SELECT ID FROM SPSTUD WHERE IDG = " + std::to_string(group)
                                        + " ORDER BY FAM, IM, OTCH;");
    ASSERT_EQ(list.rowCount(), static_cast<int>(expected.size()));
    for (int row = 0; row < list.rowCount(); ++row)
        EXPECT_EQ(list.key(row), expected[static_cast<std::size_t>(row)][0].toInteger());
    EXPECT_EQ(headers(list), (QStringList{u"Фамилия"_s, u"Имя"_s, u"Отчество"_s, u"П/г"_s, u"Пол"_s,
                                          u"Дата рождения"_s, u"Адрес"_s, u"Телефон"_s,
                                          u"Удостоверение личности"_s, u"Примечание"_s,
                                          u"Приказ об отчислении"_s, u"Причина отчисления"_s}));
}

TEST_F(DemonstrationLists, SortBackAndForthUnderTheModelTester)
{
    BookListModel model(Book::Teachers, kCollege);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.load(journal->database(), {});
    const QStringList byQuery = names(model.list());
    ASSERT_GT(byQuery.size(), 3);
    const QPersistentModelIndex first = model.index(0, 1);
    model.sort(1, Qt::DescendingOrder);
    EXPECT_EQ(first.row(), model.rowCount() - 1);
    EXPECT_EQ(first.data().toString(), byQuery.first());
    QStringList reversed = byQuery;
    std::ranges::reverse(reversed);
    EXPECT_EQ(names(model.list()), reversed);
    model.sort(-1);
    EXPECT_EQ(names(model.list()), byQuery);
}

class BookLists : public testing::Test
{
protected:
    jet::Database& database() { return journal.database(); }
    BookList loaded(Book book, const ListFilter& filter = {},
                    const shell::Wording& wording = kCollege)
    {
        BookList list(book, wording);
        list.load(database(), filter);
        return list;
    }

    SmallJournal journal;
};

TEST_F(BookLists, KeepAGroupWithoutSpecialityAndFormTeacher)
{
    database().execute("INSERT INTO SPOTD (SOKR, NAIM) VALUES (\"ИС\", \"Системы\");");
    database().execute("INSERT INTO SPPREP (FAMIO) VALUES (\"О\"\"Хара 'Л.' #1\");");
    database().execute("INSERT INTO SPGRUP (NAIM, KURS, IDO, IDP, MEMO) "
                       "VALUES (\"ИС-21\", 2, 1, 1, \"две"
                       "\r\n"
                       "строки\");");
    database().execute("INSERT INTO SPGRUP (NAIM, IDO, IDP) VALUES (\"без всего\", 77, 78);");
    const BookList list = loaded(Book::Groups);
    ASSERT_EQ(list.rowCount(), 2);
    EXPECT_EQ(cells(list, 0), (QStringList{u""_s, u""_s, u"без всего"_s, u""_s, u""_s}));
    EXPECT_EQ(cells(list, 1), (QStringList{u"Системы"_s, u"2"_s, u"ИС-21"_s, u"О\"Хара 'Л.' #1"_s,
                                           u"две строки"_s}));
    EXPECT_EQ(list.name(1), u"ИС-21"_s);
}

TEST_F(BookLists, CountAMissingSubgroupAsNone)
{
    const int group = journal.group("A");
    journal.student(group, "Без", "", "");
    journal.student(group, "Ноль", "", "", 0);
    journal.student(group, "Один", "", "", 1);
    EXPECT_EQ(names(loaded(Book::Students, {{}, group, {}})),
              (QStringList{u"Без"_s, u"Ноль"_s, u"Один"_s}));
    const BookList whole = loaded(Book::Students, {{}, group, 0});
    EXPECT_EQ(names(whole), (QStringList{u"Без"_s, u"Ноль"_s}));
    EXPECT_EQ(whole.text(0, 3), u"0"_s);
    EXPECT_EQ(whole.text(0, 4), u"Ж"_s);
    EXPECT_EQ(names(loaded(Book::Students, {{}, group, 1})), QStringList{u"Один"_s});
}

TEST_F(BookLists, NameRolesAndKeepTheKey)
{
    database().execute("DELETE * FROM USERS;");
    database().execute("INSERT INTO USERS (NAIM, ROLE) VALUES (\"в\", 7);");
    database().execute("INSERT INTO USERS (NAIM, ROLE) VALUES (\"а\", 0);");
    database().execute("INSERT INTO USERS (NAIM, ROLE) VALUES (\"б\", 1);");
    const BookList list = loaded(Book::Users);
    EXPECT_EQ(cells(list, 0), (QStringList{u"а"_s, u"Администратор"_s}));
    EXPECT_EQ(cells(list, 1), (QStringList{u"б"_s, u"Диспетчер"_s}));
    EXPECT_EQ(cells(list, 2), (QStringList{u"в"_s, u"Пользователь"_s}));
    EXPECT_EQ(list.key(1), integer(database(), "SELECT IDU FROM USERS WHERE ROLE = 1;"));
}

TEST_F(BookLists, ShowLessonsOfFormTeachers)
{
    database().execute("INSERT INTO SPPREP (FAMIO) VALUES (\"Иванов И.И.\");");
    const int group = journal.group("ИС-21");
    database().execute("UPDATE SPGRUP SET IDP = 1;");
    const int discipline = journal.discipline("Физика");
    const int later = journal.lesson(group, discipline, {2022, 11, 2}, 3, 1);
    const int first = journal.lesson(group, discipline, {2022, 11, 1}, 2);
    journal.lesson(group, discipline, {2022, 11, 1}, 4);
    database().execute("UPDATE UROKI SET IDP = 1 WHERE UR < 4;");
    const BookList list = loaded(Book::Lessons, {}, kSchool);
    ASSERT_EQ(list.rowCount(), 2);
    EXPECT_EQ(headers(list), (QStringList{u"Дата"_s, u"№ урока"_s, u"Учитель"_s, u"Класс"_s,
                                          u"Подгуппа"_s, u"Предмет"_s}));
    EXPECT_EQ(list.leftOut(), u"Показаны уроки, которые ведут классные руководители. Остальных "
                              "уроков в журнале: 1."_s);
    EXPECT_EQ(list.key(0), first);
    EXPECT_EQ(list.key(1), later);
    EXPECT_EQ(cells(list, 1), (QStringList{u"02.11.2022"_s, u"3"_s, u"Иванов И.И."_s, u"ИС-21"_s,
                                           u"1"_s, u"Физика"_s}));
}

TEST_F(BookLists, SortNumbersByValueAndTextsInTheFilesOrder)
{
    const char* rows[] = {"\"ель\", 10", "\"Ёлка\", 9", "\"Яр\", 100", "\"ежи\", NULL"};
    for (const char* row : rows)
        database().execute(std::string("INSERT INTO SPPRED (NAIM, TRUD) VALUES (") + row + ");");
    BookList list = loaded(Book::Disciplines, {}, kSchool);
    EXPECT_EQ(headers(list), (QStringList{u"Наименование"_s, u"Трудность"_s}));
    list.sort(1);
    EXPECT_EQ(names(list), (QStringList{u"ежи"_s, u"Ёлка"_s, u"ель"_s, u"Яр"_s}));
    list.sort(1, Qt::DescendingOrder);
    EXPECT_EQ(names(list), (QStringList{u"Яр"_s, u"ель"_s, u"Ёлка"_s, u"ежи"_s}));
    list.sort({});
    const QStringList byQuery = names(list);
    list.sort(0);
    EXPECT_EQ(names(list), byQuery) << "the engine's ORDER BY and the list sort alike";
}

TEST_F(BookLists, NarrowByEveryWordAndFindByTyping)
{
    for (const char* name : {"Алгебра", "Геометрия", "Геодезия", "История"})
        journal.discipline(name);
    database().execute("UPDATE SPPRED SET KOD = \"ОУД\" WHERE NAIM LIKE \"Г*\";");
    BookList list = loaded(Book::Disciplines);
    EXPECT_EQ(list.nameColumn(), 1);
    EXPECT_EQ(list.find(u"гео"_s, 0, 1), 1);
    EXPECT_EQ(list.find(u"гео"_s, 2, 1), 2);
    EXPECT_EQ(list.find(u"гео"_s, 3, 1), 1) << "goes round";
    EXPECT_EQ(list.find(u"ометрия"_s, 0, 1), std::nullopt);
    const std::int64_t kept = list.key(2);
    list.narrow(u" МЕТР оуд "_s);
    EXPECT_EQ(names(list), QStringList{u"Геометрия"_s});
    EXPECT_EQ(list.rowOfKey(kept), 0);
    list.load(database(), {});
    EXPECT_EQ(list.rowCount(), 1) << "the line stays in force";
    EXPECT_EQ(list.loadedCount(), 4);
    list.narrow(u"оуд история"_s);
    EXPECT_EQ(list.rowCount(), 0);
    EXPECT_EQ(list.find(u"а"_s, 0, 1), std::nullopt);
    list.narrow({});
    const int picked[] = {3, 1};
    EXPECT_EQ(list.keys(picked), (std::vector<std::int64_t>{list.key(1), list.key(3)}));
}

TEST(SortText, OrdersAsItsNumbers)
{
    EXPECT_EQ(sortText(12.5), u"000000000000012.500"_s + QString(81, u' '));
    const double numbers[] = {0, 1, 1.5, 9, 10, 99.999, 100, 123456789012345.0};
    for (std::size_t i = 1; i < std::size(numbers); ++i)
        EXPECT_LT(sortText(numbers[i - 1]), sortText(numbers[i]));
}

TEST_F(BookLists, ReopenAsTheyWereLeft)
{
    const QTemporaryDir folder;
    shell::Settings settings(folder.filePath(u"settings.ini"_s));
    database().execute("INSERT INTO SPPREP (FAMIO) VALUES (\"Иванов\");");
    journal.group("А-1");
    const int second = journal.group("Б-1");
    {
        BookFilter filter(Book::Workload, kCollege);
        filter.restore(settings, database());
        EXPECT_EQ(filter.caption(), u"Нагрузка преподавателя"_s);
        EXPECT_EQ(filter.listFilter().key, std::nullopt);
        filter.chooseSecond(0);
        filter.chooseFirst(1, database());
        EXPECT_EQ(filter.listFilter().key, std::nullopt) << "another kind, nobody chosen";
        filter.chooseSecond(1);
        filter.save(settings);
    }
    BookFilter filter(Book::Workload, kSchool);
    filter.restore(settings, database());
    EXPECT_EQ(filter.caption(), u"Нагрузка класса"_s);
    EXPECT_EQ(filter.listFilter().kind, WorkloadKind::ByGroup);
    EXPECT_EQ(filter.listFilter().key, second);
    database().execute("DELETE * FROM SPGRUP WHERE NAIM = \"А-1\";");
    filter.fill(database());
    EXPECT_EQ(filter.listFilter().key, second) << "the same group, at another position";
    BookFilter later(Book::Workload, kCollege);
    later.restore(settings, database());
    EXPECT_EQ(later.listFilter().key, std::nullopt) << "that position is gone";
}

TEST_F(BookLists, NarrowStudentsToGroupAndSubgroup)
{
    const QTemporaryDir folder;
    shell::Settings settings(folder.filePath(u"settings.ini"_s));
    journal.group("А-1");
    const int second = journal.group("Б-1");
    BookFilter filter(Book::Students, kCollege);
    filter.restore(settings, database());
    EXPECT_EQ(filter.listFilter().key, std::nullopt);
    EXPECT_EQ(filter.second().front().text, u"Все подгруппы"_s);
    filter.chooseFirst(1, database());
    EXPECT_EQ(filter.listFilter().key, second);
    EXPECT_EQ(filter.listFilter().subgroup, std::nullopt);
    filter.chooseSecond(1);
    EXPECT_EQ(filter.listFilter().subgroup, 0);
    filter.fill(database());
    EXPECT_EQ(filter.listFilter().subgroup, 0);
    filter.save(settings);
    BookFilter again(Book::Students, kSchool);
    again.restore(settings, database());
    EXPECT_EQ(again.listFilter().key, second);
    EXPECT_EQ(again.listFilter().subgroup, std::nullopt);
    EXPECT_EQ(again.caption(), u"Учащиеся"_s);
}

} // namespace
