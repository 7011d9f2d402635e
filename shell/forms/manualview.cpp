#include "shell/forms/manualview.h"

#include "shell/service/helppage.h"

#include <QAbstractTextDocumentLayout>
#include <QScrollBar>
#include <QTextBlock>

using namespace Qt::StringLiterals;

// The macro must stand outside a namespace.
static void initManual()
{
    Q_INIT_RESOURCE(help);
}

namespace shell {

namespace {

const QUrl kManual(u"qrc:/help/manual.md"_s);

QUrl place(const QString& anchor)
{
    QUrl url = kManual;
    url.setFragment(anchor);
    return url;
}

} // namespace

ManualView::ManualView(QWidget* parent)
    : QTextBrowser(parent)
{
    initManual();
    setOpenExternalLinks(true);
    document()->setDocumentMargin(12);
    setSource(kManual, QTextDocument::MarkdownResource);
    readHeadings();
    connect(this, &QTextBrowser::sourceChanged, this,
            [this](const QUrl& url) { showHeading(url.fragment()); });
}

void ManualView::goTo(const QString& anchor)
{
    setSource(place(anchor), QTextDocument::MarkdownResource);
}

bool ManualView::findText(const QString& text, bool backwards)
{
    if (text.isEmpty()) {
        return false;
    }
    const auto flags = backwards ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    if (find(text, flags)) {
        return true;
    }
    const QTextCursor found = textCursor();
    moveCursor(backwards ? QTextCursor::End : QTextCursor::Start);
    if (find(text, flags)) {
        return true;
    }
    setTextCursor(found);
    return false;
}

QString ManualView::anchorInSight() const
{
    const int top = cursorForPosition(QPoint(0, fontMetrics().height())).position();
    QString anchor;
    for (std::size_t i = 0; i < m_headings.size() && m_positions[i] <= top; ++i) {
        anchor = m_headings[i].anchor;
    }
    return anchor;
}

// Markdown as Qt reads it gives headings no names to link to.
void ManualView::showHeading(const QString& anchor)
{
    for (std::size_t i = 0; i < m_headings.size(); ++i) {
        if (m_headings[i].anchor == anchor) {
            QTextCursor cursor(document());
            cursor.setPosition(m_positions[i]);
            setTextCursor(cursor); // a search goes on from here
            const QRectF place = document()->documentLayout()->blockBoundingRect(cursor.block());
            verticalScrollBar()->setValue(qRound(place.top()));
            return;
        }
    }
}

void ManualView::readHeadings()
{
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level == 0) {
            continue;
        }
        m_headings.push_back({level, block.text(), headingAnchor(block.text())});
        m_positions.push_back(block.position());
    }
}

} // namespace shell
