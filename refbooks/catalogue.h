#pragma once

#include <QString>

#include <array>
#include <string_view>

namespace shell {
class Wording;
}

namespace refbooks {

// A reference book. The numbers are passed between windows and kept in settings: they never
// change, and 13 stays unused.
enum class Book {
    Workload = 0,
    Specialities = 1,
    Groups = 2,
    Teachers = 3,
    Rooms = 4,
    RoomTypes = 5,
    Disciplines = 6,
    Departments = 7,
    Holidays = 8,
    BanReasons = 9,
    LessonTimes = 10,
    Users = 11,
    LessonTypes = 12,
    GroupTypes = 14,
    Students = 15,
    TimetableProjects = 16,
    StudyForms = 17,
    Lessons = 18, // has a list, but no record dialog and no deletion rule
};

inline constexpr int kBookCodes = 19;

// An entry of the catalogue. Texts are in the college's words.
struct BookInfo
{
    std::string_view table;   // "" only in the unused slot
    std::string_view key;     // its key field, a long integer
    QString noun;             // one record, as dialog captions and messages name it
    QString title;            // the list window's caption
    std::string_view command; // the menu command that opens the list
};

// All codes; slot 13 is empty.
const std::array<BookInfo, kBookCodes>& catalogue();
const BookInfo& bookInfo(Book book);

// The list window's caption in the institution's words. The workload's is completed by its
// filter.
QString bookTitle(Book book, const shell::Wording& wording);
QString bookNoun(Book book, const shell::Wording& wording);

} // namespace refbooks
