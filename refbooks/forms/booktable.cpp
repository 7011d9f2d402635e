#include "refbooks/forms/booktable.h"

#include "refbooks/booklistmodel.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionHeader>
#include <QStyledItemDelegate>

#include <algorithm>

namespace refbooks {
namespace {

constexpr qint64 kTypingMs = 1200; // a longer pause begins a new word

// Between cells; what the style draws vanishes in the dark.
QColor gridLine(const QPalette& palette)
{
    constexpr float kShare = 0.18F;
    const QColor base = palette.color(QPalette::Base), text = palette.color(QPalette::Text);
    const auto mix = [](float from, float to) { return from + (to - from) * kShare; };
    return QColor::fromRgbF(mix(base.redF(), text.redF()), mix(base.greenF(), text.greenF()),
                            mix(base.blueF(), text.blueF()));
}

// A long heading on two lines of about the same length.
QString onTwoLines(QString text)
{
    constexpr qsizetype kLong = 20;
    if (text.size() < kLong)
        return text;
    const qsizetype middle = text.size() / 2;
    const qsizetype before = text.lastIndexOf(u' ', middle), after = text.indexOf(u' ', middle);
    const bool takesAfter = before < 0 || (after >= 0 && after - middle < middle - before);
    if (const qsizetype at = takesAfter ? after : before; at >= 0)
        text[at] = u'\n';
    return text;
}

constexpr int kRoom = 12; // beside a heading, both sides together

class BookHeader final : public QHeaderView
{
public:
    explicit BookHeader(QWidget* parent)
        : QHeaderView(Qt::Horizontal, parent)
    {
        setSectionsClickable(true);
        setHighlightSections(false);
        setSortIndicatorClearable(true); // a third click: the query's order
        setSortIndicator(-1, Qt::AscendingOrder);
    }

protected:
    void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override
    {
        QHeaderView::initStyleOptionForIndex(option, section);
        if (fontMetrics().horizontalAdvance(option->text) + kRoom > sectionSize(section))
            option->text = onTwoLines(option->text);
    }
    // The base would ask the style for the width of the whole heading.
    QSize sectionSizeFromContents(int section) const override
    {
        QStyleOptionHeaderV2 option;
        initStyleOption(&option);
        option.section = section;
        option.text = onTwoLines(model()->headerData(section, Qt::Horizontal).toString());
        option.sortIndicator = QStyleOptionHeader::SortDown; // keeps room for it
        return style()->sizeFromContents(QStyle::CT_HeaderSection, &option, {}, this);
    }
};

class CellDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        painter->save();
        painter->setPen(gridLine(option.palette));
        painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
        painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
        painter->restore();
    }
};

} // namespace

BookTable::BookTable(QWidget* parent)
    : QTableView(parent)
{
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false); // the delegate draws it
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegate(new CellDelegate(this));
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    constexpr int kSpace = 6; // above and below the text together
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kSpace);
    setHorizontalHeader(new BookHeader(this));
}

void BookTable::setModel(QAbstractItemModel* model)
{
    QTableView::setModel(model);
    setSortingEnabled(true);
}

bool BookTable::isTyping() const
{
    return !m_typed.isEmpty() && m_sinceKey.isValid() && !m_sinceKey.hasExpired(kTypingMs);
}

void BookTable::keyboardSearch(const QString& typed)
{
    const BookList& list = qobject_cast<const BookListModel*>(model())->list();
    const bool goesOn = isTyping();
    m_typed = goesOn ? m_typed + typed : typed;
    m_sinceKey.start();
    // A word that goes on may still mean the row it found so far.
    const int from = currentIndex().row() + (goesOn ? 0 : 1);
    const auto row = list.find(m_typed, from, list.nameColumn());
    if (row)
        goToRow(*row);
    emit searched(m_typed, row.has_value());
}

void BookTable::goToRow(int row)
{
    const int column = std::max(0, currentIndex().column());
    const QModelIndex index = model()->index(row, column);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect
                                                 | QItemSelectionModel::Rows);
    if (index.isValid())
        scrollTo(index);
}

std::vector<int> BookTable::selectedRowNumbers() const
{
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    std::ranges::sort(rows);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

int BookTable::selectedRowCount() const
{
    int count = 0;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        count += range.height(); // whole rows, so that ranges never overlap
    return count;
}

// A blank within a name that is being typed belongs to it.
void BookTable::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier && isTyping())
        keyboardSearch(event->text());
    else
        QTableView::keyPressEvent(event);
}

// In a list of whole rows Home and End mean the list, not the row.
QModelIndex BookTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const int column = std::max(0, currentIndex().column());
    if (action == MoveHome)
        return model()->index(0, column);
    if (action == MoveEnd)
        return model()->index(model()->rowCount() - 1, column);
    return QTableView::moveCursor(action, modifiers);
}

} // namespace refbooks
