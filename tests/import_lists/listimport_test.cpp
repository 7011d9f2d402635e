#include "import/lists/columnmemory.h"
#include "import/lists/listimport.h"

#include "demo/demo.h"
#include "import/tables/readtable.h"
#include "jet/error.h"
#include "refbooks/booklist.h"
#include "sheets/writetable.h"
#include "tests/refbooks/bookfixture.h"

#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace imports;
using refbooks::Book;

namespace {

TextTable table(const QStringList& lines)
{
    TextTable result;
    for (const QString& line : lines)
        result.rows.push_back({static_cast<int>(result.rows.size()) + 1, line.split(u'|')});
    return result;
}

class ListImports : public BookFixture
{
protected:
    std::unique_ptr<ListImport> opened(Book book, const QStringList& lines)
    {
        auto import = ListImport::open(session, prompt, book, table(lines));
        EXPECT_TRUE(import);
        return import;
    }
    // "2 refused Reason" for each row that is worth a word, after the four counts.
    static QString summary(const ListReport& report)
    {
        QString text = u"%1 %2 %3 %4"_s.arg(report.count(RowOutcome::Added))
                           .arg(report.count(RowOutcome::Updated))
                           .arg(report.count(RowOutcome::Skipped))
                           .arg(report.count(RowOutcome::Refused));
        for (const RowResult& row : report.rows)
            if (row.outcome == RowOutcome::Refused)
                text += u"\n%1 %2"_s.arg(row.number).arg(row.reason);
        return text;
    }
};

TEST_F(ListImports, RefusesRowsAsTheRecordDialogDoes)
{
    session.database().execute("INSERT INTO SPPREP (FAMIO) VALUES (\"Иванов И.И.\");");
    auto import =
        opened(Book::Students, {u"Список группы"_s, u"№|Студент|Пол|Д.Р.|Телефон|Тел."_s,
                                u"1|Иванов  Иван Иванович оглы|м|1.9.2005|1|x"_s,
                                u"2|Петрова Анна||"_s, u"3|Одинокий|м|"_s,
                                u"4|Сидоров Петр|?|31.02.2005"_s, u"5|Будущий Петр|м|01.01.2999"_s,
                                u"6||М|"_s, u"7|"_s + QString(51, u'я') + u" Имя"_s});
    ListChoice choice = import->guess();
    EXPECT_EQ(choice.columns.headRow, 1u);
    EXPECT_EQ(import->problem(choice), u"В файле нет графы с группой: выберите группу для всех."_s);
    choice.group = static_cast<int>(add("SPGRUP", {{"NAIM", "ИС-21"}}));
    import = opened(Book::Students, [&] {
        QStringList lines;
    for (const TextRow& row : import->table().rows)
        lines << row.cells.join(u'|');
    return lines;
}());
const QString expected =
    u"2 0 0 5\n"
    "5 Необходимо обязательно заполнить поле \"Имя\".\n"
    "6 В списке \"Пол\" нет строки \"?\". В поле \"Дата рождения\" нужна дата вида 31.12.2026, "
    "а введено \"31.02.2005\".\n"
    "7 Дата рождения больше текущей даты! Измените значение.\n"
    "8 Необходимо обязательно заполнить поле \"Фамилия\".\n"
    "9 Значение \"%1\" не подходит для поля \"Фамилия\". Измените введенное значение."_s.arg(
        QString(51, u'я'));
const auto preview = import->preview(choice);
EXPECT_EQ(summary(*preview).toStdString(), expected.toStdString());
EXPECT_EQ(rows("SELECT * FROM SPSTUD"), QStringList()) << "a preview writes nothing";
EXPECT_EQ(summary(*import->run(choice)).toStdString(), expected.toStdString());
reopen();
EXPECT_EQ(rows("SELECT FAM, IM, OTCH, POL, D_R, TEL FROM SPSTUD ORDER BY FAM"),
          (QStringList{u"Иванов Иван Иванович оглы -1 01.09.2005 1"_s, u"Петрова Анна - 0 - -"_s}));
} // namespace

TEST_F(ListImports, TreatsExistingRowsAsChosen)
{
    add("SPPREP", {{"FAMIO", "Иванов И.И."}, {"TABNOM", "1"}, {"MEMO", "стаж"}});
    add("SPPREP", {{"FAMIO", "Петров П.П."}, {"TABNOM", "2"}});
    const QStringList lines = {u"Таб. номер|ФИО|Примечание"_s, u"7|ИВАНОВ И.И.|"_s,
                               u"2|Петров П.П."_s, u"3|Новый Н.Н."_s, u"4|Новый Н.Н."_s};
    const struct
    {
        ExistingRow existing;
        QString summary;
        QStringList rows;
    } cases[] = {
        {ExistingRow::Skip,
         u"1 0 3 0"_s,
         {u"Иванов И.И. 1 стаж"_s, u"Новый Н.Н. 3 -"_s, u"Петров П.П. 2 -"_s}},
        {ExistingRow::Update,
         u"1 2 1 0"_s, // the row added is the one updated
         {u"ИВАНОВ И.И. 7 стаж"_s, u"Новый Н.Н. 4 -"_s, u"Петров П.П. 2 -"_s}},
    };
    const QString all = u"SELECT FAMIO, TABNOM, MEMO FROM SPPREP ORDER BY FAMIO"_s;
    const QStringList before = rows(all.toStdString());
    for (const auto& each : cases) {
        const auto import = opened(Book::Teachers, lines);
        ListChoice choice = import->guess();
        choice.existing = each.existing;
        EXPECT_EQ(summary(*import->run(choice)), each.summary);
        reopen();
        EXPECT_EQ(rows(all.toStdString()), each.rows);
        EXPECT_TRUE(import->undo(prompt));
        reopen();
        EXPECT_EQ(rows(all.toStdString()), before);
    }
    const auto import = opened(Book::Teachers, lines);
    ListChoice choice = import->guess();
    choice.existing = ExistingRow::AddAnyway; // the book does not allow it
    const ListReport report = *import->run(choice);
    EXPECT_EQ(report.count(RowOutcome::Refused), 3);
    EXPECT_TRUE(report.rows[0].reason.contains(u"уже имеется в другой строке"_s));
}

TEST_F(ListImports, CreatesNamesThatNeedNothingElse)
{
    add("SPOTD", {{"Kod", "09"}, {"Naim", "Системы"}, {"Sokr", "ИС"}});
    const QStringList lines = {u"Специальность|Курс|Название|Куратор"_s,
                               u"системы|2|ИС-21|Орлов О.О."_s, u"ИС|1|ИС-11|орлов О. О."_s,
                               u"Право|1|П-11|Лишний Л.Л."_s, u"09 Системы|3.5|ИС-31|"_s};
    const auto import = opened(Book::Groups, lines);
    ListChoice choice = import->guess();
    EXPECT_EQ(import->preview(choice)->count(RowOutcome::Added), 0);
    choice.createMissing = true;
    const ListReport report = *import->run(choice);
    EXPECT_EQ(report.count(RowOutcome::Added), 2);
    ASSERT_EQ(report.missing.size(), 3u);
    EXPECT_TRUE(report.missing[0].isCreated);
    EXPECT_FALSE(report.missing[2].isCreated) << "its row is refused";
    EXPECT_EQ(rows("SELECT FAMIO FROM SPPREP"), QStringList{u"Орлов О.О."_s});
    EXPECT_FALSE(report.missing[1].canBeCreated) << "a speciality needs a code as well";
    EXPECT_TRUE(report.text(u"Импорт"_s).contains(u"Нет в списке \"Специальность\": Право"_s));
    const std::string groups = "SELECT SPGRUP.NAIM, KURS, FAMIO FROM SPGRUP LEFT JOIN SPPREP ON "
                               "SPGRUP.IDP = SPPREP.IDP ORDER BY SPGRUP.NAIM";
    EXPECT_EQ(rows(groups), (QStringList{u"ИС-11 1 Орлов О.О."_s, u"ИС-21 2 Орлов О.О."_s}));
    EXPECT_TRUE(import->undo(prompt));
    EXPECT_EQ(rows(groups) + rows("SELECT * FROM SPPREP"), QStringList());

    add("SPGRUP", {{"IDO", 1}, {"KURS", 2}, {"NAIM", "ИС-21"}});
    choice.existing = ExistingRow::Update;
    EXPECT_EQ(import->run(choice)->count(RowOutcome::Updated), 1);
    EXPECT_EQ(rows(groups), (QStringList{u"ИС-11 1 Орлов О.О."_s, u"ИС-21 2 Орлов О.О."_s}));
    EXPECT_TRUE(import->undo(prompt)) << "the row lets go of the name before the name goes";
    EXPECT_EQ(rows(groups) + rows("SELECT * FROM SPPREP"), QStringList{u"ИС-21 2 -"_s});
}

TEST_F(ListImports, KnowsColumnsAsTheyWereChosenBefore)
{
    const QStringList lines = {u"Кто|Связь|Название"_s, u"Физика|12|x"_s};
    const auto import = opened(Book::Departments, lines);
    ListChoice choice = import->guess();
    EXPECT_EQ(choice.columns.fields, (std::vector<int>{kNoField, kNoField, 0}));
    choice.columns.fields[0] = 0;
    EXPECT_EQ(import->problem(choice),
              u"Поле \"Наименование\" выбрано для двух граф: оставьте одну."_s);
    choice.columns.fields[2] = kNoField;
    ColumnMemory memory;
    memory.learn(Book::Departments, import->fields(), import->table(), choice.columns);
    memory = ColumnMemory::fromJson(memory.toJson());
    EXPECT_EQ(import->guess(memory.names()).columns, choice.columns);

    choice.columns = import->guess().columns; // back to the guess: nothing is left to remember
    memory.learn(Book::Departments, import->fields(), import->table(), choice.columns);
    EXPECT_TRUE(memory.names().isEmpty());
    EXPECT_TRUE(ColumnMemory::fromJson("[1, {").names().isEmpty());
    EXPECT_EQ(import->guess({{u"кто"_s, u"НЕТ"_s}}).columns, import->guess().columns);
}

TEST_F(ListImports, IsNotUndoneOverLaterWork)
{
    const int group = static_cast<int>(add("SPGRUP", {{"NAIM", "ИС-21"}}));
    for (const char* later : {"UPDATE SPSTUD SET TEL = \"1\";",
                              "INSERT INTO POS (ID, IDD) SELECT ID, 1 FROM SPSTUD;"}) {
        session.database().execute("DELETE FROM SPSTUD;");
        const auto import = opened(Book::Students, {u"Фамилия|Имя"_s, u"Иванов|Иван"_s});
        ListChoice choice = import->guess();
        choice.group = group;
        EXPECT_EQ(import->run(choice)->count(RowOutcome::Added), 1);
        session.database().execute(later);
        prompt.expectMatching(Box::Exclamation, u"^Импорт отменить нельзя: .*"_s);
        EXPECT_FALSE(import->undo(prompt));
        EXPECT_EQ(rows("SELECT FAM FROM SPSTUD"), QStringList{u"Иванов"_s});
    }
}

TEST_F(ListImports, RefusesWhatMayNotBeDone)
{
    const QStringList lines = {u"Наименование"_s, u"Кафедра физики"_s};
    prompt.expectMatching(Box::Exclamation, u"^В файле нет строк.*"_s);
    EXPECT_FALSE(ListImport::open(session, prompt, Book::Departments, table({lines[0]})));
    prompt.expectMatching(Box::Exclamation, u"^В этот справочник.*"_s);
    EXPECT_FALSE(ListImport::open(session, prompt, Book::Users, table(lines)));
    EXPECT_NE(opened(Book::Departments, {u"?"_s, u"x"_s})->problem({}), QString());
    const auto import = opened(Book::Departments, lines);
    session.setMassActionGuard([](const QString& action) {
        EXPECT_EQ(action, u"импортом списка"_s);
        return false;
    });
    EXPECT_FALSE(import->run(import->guess()));
    session.setMassActionGuard({});
    EXPECT_THROW(readSource(session, session.journal().filePath()), jet::Error);
    signIn(shell::Role::User);
    prompt.expectMatching(Box::Exclamation, u"^Справочники может изменять.*"_s);
    EXPECT_FALSE(ListImport::open(session, prompt, Book::Departments, table(lines)));
}

// Every list that the program exports comes back as it was.
class RoundTrip : public BookFixture, public testing::WithParamInterface<const char*>
{
protected:
    static sheets::Table shown(const refbooks::BookList& list)
    {
        sheets::Table result;
        result.title = u"Список"_s;
        for (int i = 0; i < static_cast<int>(list.columns().size()); ++i)
            result.columns.push_back({list.columns()[static_cast<std::size_t>(i)].header,
                                      static_cast<sheets::Kind>(list.kind(i))});
        result.rows = list.rowCount();
        result.text = [&list](int row, int column) { return list.text(row, column); };
        return result;
    }
    static refbooks::BookList read(jet::Database& database, Book book,
                                   const refbooks::ListFilter& filter)
    {
        refbooks::BookList list(book, shell::Wording());
        list.load(database, filter);
        return list;
    }
    // Without the numbers that the file gives.
    static QStringList lines(const refbooks::BookList& list)
    {
        QStringList all;
        for (int row = 0; row < list.rowCount(); ++row) {
            QStringList cells;
            for (int i = 0; i < static_cast<int>(list.columns().size()); ++i)
                if (!list.columns()[static_cast<std::size_t>(i)].header.startsWith(u"Номер "_s)
                    || list.book() == Book::LessonTimes)
                    cells << list.text(row, i);
            all << cells.join(u'|');
        }
        all.sort();
        return all;
    }
    // Carries a list over and compares it.
    void carry(jet::Database& from, Book book, refbooks::ListFilter filter = {},
               std::optional<int> group = {})
    {
        SCOPED_TRACE(static_cast<int>(book));
        const refbooks::BookList list = read(from, book, filter);
        if (list.rowCount() == 0)
            return;
        ++carried;
        const QString path = folder.filePath(QString::fromLatin1(GetParam()));
        sheets::writeTable(path, shown(list), sheets::Existing::Replace);
        const auto import = ListImport::open(session, prompt, book, readTable(path));
        ASSERT_TRUE(import);
        ListChoice choice = import->guess();
        choice.group = group;
        const auto report = import->run(choice);
        EXPECT_EQ(report->count(RowOutcome::Refused), 0)
            << report->text(path).left(400).toStdString();
        if (group)
            filter.key = group;
        EXPECT_EQ(lines(read(session.database(), book, filter)).join(u'\n').toStdString(),
                  lines(list).join(u'\n').toStdString());
    }

    QTemporaryDir folder;
    int carried = 0;
};

TEST_P(RoundTrip, KeepsEveryBook)
{
    SmallJournal other;
    jet::Database& from = other.database();
    demo::fill(from, demo::Scale::Small, 7);
    for (const Book book :
         {Book::RoomTypes, Book::Rooms, Book::Specialities, Book::Teachers, Book::Groups,
          Book::Disciplines, Book::Departments, Book::Holidays, Book::BanReasons, Book::LessonTimes,
          Book::LessonTypes, Book::GroupTypes, Book::TimetableProjects, Book::StudyForms})
        carry(from, book);
    for (const auto& row : from.rows("SELECT IDG, NAIM FROM SPGRUP;")) {
        const auto there = session.database().rows("SELECT IDG FROM SPGRUP WHERE NAIM = \""
                                                   + row[1].toText() + "\";");
        ASSERT_EQ(there.size(), 1u);
        refbooks::ListFilter students;
        students.key = static_cast<int>(row[0].toInteger());
        const auto group = static_cast<int>(there[0][0].toInteger());
        carry(from, Book::Students, students, group);
        refbooks::ListFilter workload = students;
        workload.kind = refbooks::WorkloadKind::ByGroup;
        carry(from, Book::Workload, workload, group);
    }
    EXPECT_GE(carried, 10);
}

INSTANTIATE_TEST_SUITE_P(Formats, RoundTrip, testing::Values("a.xlsx", "a.csv"));

} // namespace
