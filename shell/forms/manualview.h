#pragma once

#include <QTextBrowser>

#include <vector>

namespace shell {

// The user manual, with its headings as places that can be gone to and back from.
class ManualView final : public QTextBrowser
{
    Q_OBJECT

public:
    struct Heading
    {
        int level; // 1 is the manual's own title
        QString title;
        QString anchor;
    };

    explicit ManualView(QWidget* parent = nullptr);

    const std::vector<Heading>& headings() const { return m_headings; }
    void goTo(const QString& anchor);
    // Selects the next place with this text, or the one before, beginning anew at the other
    // end; false when there is none.
    bool findText(const QString& text, bool backwards);
    // The heading that the top of the view belongs to.
    QString anchorInSight() const;

private:
    void readHeadings();
    void showHeading(const QString& anchor);

    std::vector<Heading> m_headings;
    std::vector<int> m_positions; // of the headings in the text
};

} // namespace shell
