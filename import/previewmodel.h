#pragma once

#include "import/lessonchoice.h"

#include <QAbstractTableModel>

#include <memory>

namespace shell {
class Wording;
}

namespace imports {

// The lessons of a period as the timetable has them.
class PreviewModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Date, Teacher, Group, Subgroup, Discipline, ColumnCount };
    enum Role { MissingRole = Qt::UserRole }; // true when the lesson cannot be imported

    // The timetable must outlive the model.
    PreviewModel(const Timetable& timetable, const shell::Wording& wording,
                 QObject* parent = nullptr);

    // Null shows nothing.
    void show(std::shared_ptr<const LessonChoice> choice);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    QString text(std::size_t lesson, int column) const;

    const Timetable& m_timetable;
    const shell::Wording& m_wording;
    std::shared_ptr<const LessonChoice> m_choice;
};

} // namespace imports
