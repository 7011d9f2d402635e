#pragma once

#include "refbooks/columns.h"

#include <QByteArray>
#include <QObject>

#include <vector>

class QTableView;

namespace refbooks {

// The column widths of a book's list: shared out over the window's width until the user
// chooses, kept as chosen from then on.
class BookWidths final : public QObject
{
    Q_OBJECT

public:
    // The view must show the columns already.
    BookWidths(QTableView& view, const std::vector<Column>& columns);

    // What save() gave in an earlier run; anything else is ignored.
    void restore(const QByteArray& saved);
    // "" while nothing was chosen.
    QByteArray save() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void spread();

    QTableView& m_view;
    std::vector<int> m_weights; // relative to each other
    bool m_chosen = false;
    bool m_applying = false;
};

} // namespace refbooks
