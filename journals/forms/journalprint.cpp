#include "journals/forms/journalprint.h"

#include "journals/forms/journalparts.h"
#include "journals/journaltable.h"
#include "papers/forms/paperprinting.h"
#include "shell/session.h"

using namespace Qt::StringLiterals;

namespace journals {

void printJournal(const QAbstractItemModel& model, const QString& kind,
                  const JournalHeading& heading, const JournalParts& parts, QWidget* parent)
{
    const papers::Document document{kind,
                                    heading.title + u' ' + heading.about.join(u' '),
                                    {journalPaper(model, heading, parts.session.settings())}};
    papers::showPreview(document, parts.settings, parent);
}

void exportJournal(const QAbstractItemModel& model, const JournalHeading& heading,
                   const JournalParts& parts)
{
    parts.exportTable(journalTable(model, heading));
}

} // namespace journals
