#include "import/previewmodel.h"

#include "data/convert.h"
#include "import/importtexts.h"
#include "import/worded.h"
#include "shell/wording.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace imports {

PreviewModel::PreviewModel(const Timetable& timetable, const shell::Wording& wording,
                           QObject* parent)
    : QAbstractTableModel(parent)
    , m_timetable(timetable)
    , m_wording(wording)
{}

void PreviewModel::show(std::shared_ptr<const LessonChoice> choice)
{
    beginResetModel();
    m_choice = std::move(choice);
    endResetModel();
}

int PreviewModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !m_choice ? 0 : static_cast<int>(m_choice->shown.size());
}

int PreviewModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant PreviewModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || !m_choice)
        return {};
    const std::size_t lesson = m_choice->shown[static_cast<std::size_t>(index.row())];
    const LessonPlace& place = m_choice->places[lesson];
    switch (role) {
    case Qt::DisplayRole:
        return text(lesson, index.column());
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return missingText(place, m_wording);
    case MissingRole:
        return !place.isComplete();
    case Qt::TextAlignmentRole:
        return index.column() == Subgroup ? QVariant(Qt::AlignCenter) : QVariant();
    default:
        return {};
    }
}

QString PreviewModel::text(std::size_t lesson, int column) const
{
    const LessonPlace& place = m_choice->places[lesson];
    const auto row = [](int number) { return static_cast<std::size_t>(number); };
    switch (column) {
    case Date:
        return data::toText(m_choice->lessons.value(lesson, LessonField::Date));
    case Teacher:
        return place.teacher < 0 ? QString()
                                 : data::toText(m_timetable.teachers().value(row(place.teacher),
                                                                             TeacherField::Name));
    case Group:
        return data::toText(m_timetable.groups().value(row(place.group), GroupField::Name));
    case Subgroup:
        return data::toText(m_choice->lessons.value(lesson, LessonField::Subgroup));
    default:
        return data::toText(
            m_timetable.disciplines().value(row(place.discipline), DisciplineField::Name));
    }
}

QVariant PreviewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QString kHeaders[] = {u"Дата"_s, u"Преподаватель"_s, u"Группа"_s, u"П/г"_s,
                                       u"Дисциплина"_s};
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    return section >= 0 && section < ColumnCount ? worded(m_wording, kHeaders[section])
                                                 : QVariant();
}

} // namespace imports
