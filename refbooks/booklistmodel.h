#pragma once

#include "refbooks/booklist.h"

#include <QAbstractTableModel>

namespace refbooks {

// A book's list as the list window shows it.
class BookListModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role {
        KeyRole = Qt::UserRole, // the row's key
        SortTextRole,           // sorts as the query does
    };

    BookListModel(Book book, const shell::Wording& wording, QObject* parent = nullptr);

    const BookList& list() const { return m_list; }

    // Reads the list anew. Throws jet::Error; the rows shown then stay.
    void load(jet::Database& database, const ListFilter& filter);
    // Shows only the rows that hold every word of the line.
    void narrow(const QString& line);
    // A negative column restores the query's order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    BookList m_list;
};

} // namespace refbooks
