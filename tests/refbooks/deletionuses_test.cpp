// Every place that keeps a row from being deleted, with the whole message in both wordings.
#include "refbooks/deletion.h"

#include "tests/refbooks/bookfixture.h"

using namespace Qt::StringLiterals;
using refbooks::Book;

namespace {

struct Use
{
    Book book;
    const char* table;
    const char* name; // the field that messages call the row by
    const char* userTable;
    const char* userField;
    const char* college;
    const char* school;
};

const Use kUses[] = {
    {Book::Specialities, "SPOTD", "NAIM", "SPGRUP", "IDO",
     "Невозможно удалить специальность \"X\", так как она используется в справочнике групп.",
     "Невозможно удалить параллель \"X\", так как она используется в справочнике классов."},
    {Book::Groups, "SPGRUP", "NAIM", "SPNAGR", "IDG",
     "Невозможно удалить группу \"X\" специальность \"\", так как она используется в справочнике "
     "нагрузки.",
     "Невозможно удалить класс \"X\" параллель \"\", так как он используется в справочнике "
     "нагрузки."},
    {Book::Groups, "SPGRUP", "NAIM", "UROKI", "IDG",
     "Невозможно удалить группу \"X\" специальность \"\", так как имеются занятия или запреты "
     "группы в расписании.",
     "Невозможно удалить класс \"X\" параллель \"\", так как имеются уроки или запреты класса в "
     "расписании."},
    {Book::Teachers, "SPPREP", "FAMIO", "SPNAGR", "IDP",
     "Невозможно удалить преподавателя \"X\", так как он обнаружен в справочнике нагрузки.",
     "Невозможно удалить учителя \"X\", так как он обнаружен в справочнике нагрузки."},
    {Book::Teachers, "SPPREP", "FAMIO", "SPGRUP", "IDP",
     "Невозможно удалить преподавателя \"X\", так как он обнаружен в справочнике групп в графе "
     "\"Классный руководитель\".",
     "Невозможно удалить учителя \"X\", так как он обнаружен в справочнике классов в графе "
     "\"Классный руководитель\"."},
    {Book::Teachers, "SPPREP", "FAMIO", "UROKI", "IDP",
     "Невозможно удалить преподавателя \"X\", так как имеются занятия или запреты преподавателя "
     "в расписании.",
     "Невозможно удалить учителя \"X\", так как имеются уроки или запреты учителя в "
     "расписании."},
    {Book::Rooms, "SPKAUD", "KAUDI", "SPNAGR", "IDA",
     "Невозможно удалить аудиторию \"X\", так как она используется в справочнике нагрузки.",
     "Невозможно удалить аудиторию \"X\", так как она используется в справочнике нагрузки."},
    {Book::Rooms, "SPKAUD", "KAUDI", "UROKI", "IDA",
     "Невозможно удалить аудиторию \"X\", так как имеются учебные занятия или запреты аудитории "
     "в расписании.",
     "Невозможно удалить аудиторию \"X\", так как имеются уроки или запреты аудитории в "
     "расписании."},
    {Book::RoomTypes, "SPAUD", "NAIM", "SPKAUD", "IDT",
     "Невозможно удалить тип аудиторий \"X\", так как он используется в справочнике аудиторий.",
     "Невозможно удалить тип аудиторий \"X\", так как он используется в справочнике аудиторий."},
    {Book::Disciplines, "SPPRED", "NAIM", "SPNAGR", "IDD",
     "Невозможно удалить дисциплину \"X\", так как она используется в справочнике нагрузки.",
     "Невозможно удалить предмет \"X\", так как он используется в справочнике нагрузки."},
    {Book::Disciplines, "SPPRED", "NAIM", "UROKI", "IDD",
     "Невозможно удалить дисциплину \"X\", так как имеются занятия данного типа в расписании.",
     "Невозможно удалить предмет \"X\", так как имеются уроки данного типа в расписании."},
    {Book::Departments, "SPKAF", "NAIM", "SPPREP", "IDK",
     "Невозможно удалить кафедру \"X\", так как она указана в справочнике преподавателей.",
     "Невозможно удалить методическое объединение \"X\", так как оно указано в справочнике "
     "учителей."},
    {Book::BanReasons, "SPPRIH", "NAIM", "UROKI", "IDI",
     "Невозможно удалить причину \"X\", так как она используется в планшете занятий.",
     "Невозможно удалить причину \"X\", так как она используется в планшете уроков."},
    {Book::LessonTypes, "SPTIPZ", "NAIM", "SPNAGR", "IDZ",
     "Невозможно удалить тип занятия \"X\", так как он используется в справочнике нагрузки.",
     "Невозможно удалить тип урока \"X\", так как он используется в справочнике нагрузки."},
    {Book::GroupTypes, "SPTIPG", "NAIM", "SPGRUP", "IDF",
     "Невозможно удалить тип группы \"X\", так как он используется в справочнике групп.",
     "Невозможно удалить тип класса \"X\", так как он используется в справочнике классов."},
    {Book::TimetableProjects, "SPRASP", "DAT1", "UROKI", "IDR",
     "Невозможно удалить проект расписания \"01.09.2022 - 30.06.2023\", так как имеются "
     "назначенные занятия (и/или запреты), соответствующие данному проекту.",
     "Невозможно удалить проект расписания \"01.09.2022 - 30.06.2023\", так как имеются "
     "назначенные уроки (и/или запреты), соответствующие данному проекту."},
    {Book::StudyForms, "SPVID", "NAIM", "SPGRUP", "IDV",
     "Невозможно удалить вид обучения \"X\", так как он используется в справочнике групп.",
     "Невозможно удалить вид обучения \"X\", так как он используется в справочнике классов."},
};

const QString kConfirm = u"Удалить выделенную строку?"_s;

class DeletionUses : public BookFixture
{
protected:
    explicit DeletionUses(shell::Institution institution = shell::Institution::College)
        : BookFixture(institution)
    {}

    std::int64_t addRow(const Use& use)
    {
        if (use.book == Book::TimetableProjects)
            return add(use.table, {{"DAT1", jet::DateTime::of(2022, 9, 1)},
                                   {"DAT2", jet::DateTime::of(2023, 6, 30)}});
        return add(use.table, {{use.name, "X"}});
    }
    int remove(Book book, std::int64_t key)
    {
        const std::vector keys = {key};
        return refbooks::Deletion(session, prompt, status).deleteSelected(book, keys);
    }
    // The row is refused while the other table holds its key, and goes once it does not.
    void check(const Use& use, const char* message)
    {
        SCOPED_TRACE(std::string(use.table) + " used by " + use.userTable);
        session.database().execute(std::string("DELETE * FROM ") + use.userTable);
        const auto other = addRow(use);
        const auto key = addRow(use);
        const auto size = session.database().rowCount(use.table);
        add(use.userTable, {{use.userField, key}});

        expectQuestion(kConfirm);
        prompt.expect(Box::Exclamation, QString::fromUtf8(message));
        EXPECT_EQ(remove(use.book, key), 0);
        EXPECT_EQ(session.database().rowCount(use.table), size);

        session.database().execute(std::string("UPDATE ") + use.userTable + " SET " + use.userField
                                   + " = " + std::to_string(other) + " WHERE " + use.userField
                                   + " = " + std::to_string(key));
        expectQuestion(kConfirm);
        EXPECT_EQ(remove(use.book, key), 1);
        reopen();
        EXPECT_EQ(session.database().rowCount(use.table), size - 1);
        EXPECT_EQ(session.database().rowCount(use.userTable), 1);
    }
};

class SchoolDeletionUses : public DeletionUses
{
protected:
    SchoolDeletionUses()
        : DeletionUses(shell::Institution::School)
    {}
};

} // namespace

TEST_F(DeletionUses, KeepRowsInEveryBook)
{
    for (const Use& use : kUses)
        check(use, use.college);
}

TEST_F(SchoolDeletionUses, KeepRowsInEveryBook)
{
    for (const Use& use : kUses)
        check(use, use.school);
}
