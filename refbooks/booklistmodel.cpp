#include "refbooks/booklistmodel.h"

#include <unordered_map>
#include <utility>

namespace refbooks {
namespace {

QVariant alignment(const Column& column)
{
    switch (column.alignment) {
    case Alignment::Right:
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    case Alignment::Centre:
        return QVariant::fromValue(Qt::AlignHCenter | Qt::AlignVCenter);
    case Alignment::Left:
        break;
    }
    return QVariant::fromValue(Qt::AlignLeft | Qt::AlignVCenter);
}

} // namespace

BookListModel::BookListModel(Book book, const shell::Wording& wording, QObject* parent)
    : QAbstractTableModel(parent)
    , m_list(book, wording)
{}

void BookListModel::load(jet::Database& database, const ListFilter& filter)
{
    BookList list = m_list.emptied();
    list.load(database, filter);
    beginResetModel();
    m_list = std::move(list);
    endResetModel();
}

void BookListModel::narrow(const QString& line)
{
    beginResetModel();
    m_list.narrow(line);
    endResetModel();
}

void BookListModel::sort(int column, Qt::SortOrder order)
{
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<std::int64_t> keys;
    for (const QModelIndex& index : before)
        keys.push_back(m_list.key(index.row()));
    m_list.sort(column < 0 ? std::optional<int>() : column, order);
    std::unordered_map<std::int64_t, int> rows; // all of 150,000 rows may be selected
    for (int row = 0; !keys.empty() && row < m_list.rowCount(); ++row)
        rows[m_list.key(row)] = row;
    for (qsizetype i = 0; i < before.size(); ++i)
        changePersistentIndex(
            before[i], index(rows.at(keys[static_cast<std::size_t>(i)]), before[i].column()));
    emit layoutChanged({}, VerticalSortHint);
}

int BookListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_list.rowCount();
}

int BookListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_list.columns().size());
}

QVariant BookListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return m_list.text(index.row(), index.column());
    case Qt::TextAlignmentRole:
        return alignment(m_list.columns()[static_cast<std::size_t>(index.column())]);
    case KeyRole:
        return QVariant::fromValue<qlonglong>(m_list.key(index.row()));
    case SortTextRole:
        return m_list.sortText(index.row());
    default:
        return {};
    }
}

QVariant BookListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return QAbstractTableModel::headerData(section, orientation, role);
    const Column& column = m_list.columns()[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole)
        return column.header;
    return role == Qt::TextAlignmentRole ? alignment(column) : QVariant();
}

} // namespace refbooks
