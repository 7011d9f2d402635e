#include "import/lists/columnmatch.h"

#include "refbooks/columns.h"
#include "shell/wording.h"

#include <QHash>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

using refbooks::Book;
using refbooks::RecordField;

constexpr std::size_t kRowsToSearch = 10;

// What people call a field, beside its captions; in the form that plainHead() gives.
struct OtherNames
{
    std::optional<Book> book; // nothing: every book that has the field
    std::string_view field;
    QStringView names; // with "|" between them
};

constexpr OtherNames kOtherNames[] = {
    {Book::Students, "IDG", u"группа|класс|учебнаягруппа|учебныйкласс"},
    {Book::Students, "IDGG", u"подгруппа|пг"},
    {Book::Students, "D_R", u"датарожд|др|деньрождения|родился|датарождениястудента"},
    {Book::Students, "ADR", u"адреспроживания|адресрегистрации|местожительства"},
    {Book::Students, "TEL", u"тел|телефоны|номертелефона|мобильный|мобильныйтелефон"},
    {Book::Students, "DOC", u"паспорт|документ|удостоверение|паспортныеданные"},
    {Book::Students, "prikazOtch", u"приказ"},
    {Book::Teachers, "FAMIO", u"фио|преподаватель|учитель|фамилияимяотчество|фамилия"},
    {Book::Teachers, "TABNOM", u"табномер|табельныйномер|табельный"},
    {Book::Disciplines, "NAIM", u"дисциплина|предмет|учебнаядисциплина|учебныйпредмет"},
    {Book::Disciplines, "KOD", u"шифр|индекс"},
    {Book::Disciplines, "MEMO", u"полноеназвание"},
    {Book::Specialities, "Kod", u"шифр|кодспециальности"},
    {Book::Specialities, "Naim", u"специальность|наименованиеспециальности|параллель|профессия"},
    {Book::Specialities, "Sokr", u"сокр|краткоенаименование|краткоеназвание"},
    {Book::Groups, "NAIM", u"наименование|название|номергруппы"},
    {Book::Groups, "IDP", u"классныйруководитель|куратор|руководитель"},
    {Book::Workload, "IDD", u"предмет"},
    {Book::Workload, "IDGG", u"пг"},
    {Book::Workload, "CHSEM", u"часов|часы|всегочас|всегочасов|нагрузка|количествочасов"},
    {Book::Workload, "DATNN", u"начало"},
    {Book::Workload, "DATKK", u"окончание|конец"},
    {Book::Rooms, "KAUDI", u"кабинет|номер|номераудитории"},
    {Book::Rooms, "IDT", u"тип|типкабинета"},
    {Book::Rooms, "KOL", u"вместимость|мест|количествомест"},
    {Book::RoomTypes, "SOKR", u"сокр"},
    {Book::Departments, "NAIM", u"кафедра"},
    {Book::Holidays, "NAIM", u"праздник"},
    {Book::Holidays, "MN", u"месяцгода"},
    {Book::LessonTimes, "IDUR", u"номер|урок|занятие|номерзанятия|пара|номерпары"},
    {Book::TimetableProjects, "DAT1", u"датаначала"},
    {Book::TimetableProjects, "DAT2", u"датаокончания|конец"},
    {{}, "NAIM", u"название"},
    {{}, "MEMO", u"комментарий|замечание|прим"},
};

constexpr QStringView kFullNames[] = {
    u"фио", u"фиостудента", u"фиоученика", u"фамилияимяотчество", u"студент", u"ученик"};

const QString kFullNameSign = u"*"_s; // in ColumnNames

QString latin(std::string_view name)
{
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

// The position of each name's field.
class FieldNames
{
public:
    FieldNames(Book book, const std::vector<RecordField>& fields)
        : m_fields(fields)
    {
        for (const bool isSchool : {false, true}) {
            const shell::Wording wording(isSchool ? shell::Institution::School
                                                  : shell::Institution::College);
            for (const RecordField& field : refbooks::recordFields(book, wording))
                add(field.field, field.name());
            for (const refbooks::Column& column : refbooks::listColumns(book, wording))
                add(column.field, column.header);
        }
        for (const OtherNames& other : kOtherNames)
            if (!other.book || other.book == book)
                for (const QStringView name : other.names.split(u'|'))
                    add(other.field, name.toString());
        if (book == Book::Students)
            for (const QStringView name : kFullNames)
                m_positions.insert(name.toString(), kFullName);
        // A key of another file's list says nothing here.
        for (const RecordField& field : fields)
            if (field.kind != refbooks::FieldKind::List || field.lookup == refbooks::Lookup::Sexes
                || field.lookup == refbooks::Lookup::Subgroups
                || field.lookup == refbooks::Lookup::Months)
                add(field.field, latin(field.field));
    }

    int position(const QString& name) const { return m_positions.value(plainHead(name), kNoField); }
    // These names go before all others.
    void add(const ColumnNames& known)
    {
        for (auto name = known.begin(); name != known.end(); ++name) {
            const auto field = std::ranges::find(
                m_fields, name.value(), [](const auto& each) { return latin(each.field); });
            if (name.value().isEmpty() || name.value() == kFullNameSign)
                m_positions.insert(name.key(), name.value().isEmpty() ? kNoField : kFullName);
            else if (field != m_fields.end())
                m_positions.insert(name.key(), static_cast<int>(field - m_fields.begin()));
        }
    }

private:
    // The first field of a name keeps it.
    void add(std::string_view field, const QString& name)
    {
        const auto found = std::ranges::find(m_fields, field, &RecordField::field);
        const QString key = plainHead(name);
        if (found != m_fields.end() && !key.isEmpty() && !m_positions.contains(key))
            m_positions.insert(key, static_cast<int>(found - m_fields.begin()));
    }

    const std::vector<RecordField>& m_fields;
    QHash<QString, int> m_positions;
};

std::vector<int> fieldsOfRow(const FieldNames& names, const QStringList& cells)
{
    std::vector<int> fields;
    for (const QString& cell : cells) {
        const int field = names.position(cell);
        const bool isTaken = std::ranges::find(fields, field) != fields.end();
        fields.push_back(isTaken ? kNoField : field);
    }
    return fields;
}

} // namespace

QString nameOfField(const std::vector<RecordField>& fields, int field)
{
    if (field == kFullName)
        return kFullNameSign;
    return field == kNoField ? QString() : latin(fields[static_cast<std::size_t>(field)].field);
}

QString plainHead(const QString& text)
{
    QString letters;
    for (const QChar sign : text.toLower())
        if (sign.isLetterOrNumber())
            letters += sign == u'ё' ? QChar(u'е') : sign;
    return letters;
}

std::vector<int> guessedFields(Book book, const std::vector<RecordField>& fields,
                               const QStringList& heads)
{
    return fieldsOfRow(FieldNames(book, fields), heads);
}

ColumnMatch matchColumns(Book book, const std::vector<RecordField>& fields, const TextTable& table,
                         const ColumnNames& known)
{
    FieldNames names(book, fields);
    names.add(known);
    ColumnMatch best;
    std::ptrdiff_t most = -1;
    for (std::size_t row = 0; row < std::min(table.rows.size(), kRowsToSearch); ++row) {
        ColumnMatch match{row, fieldsOfRow(names, table.rows[row].cells)};
        const auto told =
            std::ranges::count_if(match.fields, [](int field) { return field != kNoField; });
        if (told > most) {
            most = told;
            best = std::move(match);
        }
    }
    return best;
}

int fieldNamed(Book book, const std::vector<RecordField>& fields, const QString& name)
{
    return FieldNames(book, fields).position(name);
}

} // namespace imports
