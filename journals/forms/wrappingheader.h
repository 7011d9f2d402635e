#pragma once

#include <QHeaderView>

namespace journals {

// A header of columns that wraps its captions and grows with them instead of cutting them.
// It shows the states and days off that the model names, as the cells below it do.
class WrappingHeader final : public QHeaderView
{
    Q_OBJECT

public:
    explicit WrappingHeader(QWidget* parent = nullptr);

protected:
    QSize sectionSizeFromContents(int section) const override;
    void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override;
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

private:
    QFont sectionFont(int section) const;
};

} // namespace journals
