#include "journals/journaltable.h"

#include <QAbstractItemModel>

using namespace Qt::StringLiterals;

namespace journals {

sheets::Table journalTable(const QAbstractItemModel& model, const JournalHeading& about)
{
    constexpr int kNameColumn = 1;
    sheets::Table table;
    table.title = about.title + u' ' + about.about.join(u' ');
    for (int column = 0; column < model.columnCount(); ++column) {
        const bool isName = column == kNameColumn;
        QString head = model.headerData(column, Qt::Horizontal).toString();
        table.columns.push_back({head.replace(u'\n', u' '),
                                 isName ? sheets::Kind::Text : sheets::Kind::Number,
                                 isName ? sheets::Alignment::Left : sheets::Alignment::Centre});
    }
    table.rows = model.rowCount();
    table.text = [&model](int row, int column) {
        return model.index(row, column).data().toString();
    };
    return table;
}

} // namespace journals
