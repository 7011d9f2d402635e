#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace imports {

enum class RowOutcome { Added, Updated, Skipped, Refused };

// What becomes of one row of the file.
struct RowResult
{
    int number = 0; // in the file
    RowOutcome outcome = RowOutcome::Added;
    QString name = {};   // of the record
    QString reason = {}; // why it is skipped or refused, or what is doubtful; "" for nothing
};

// A name in the file that a list of the book lacks.
struct MissingName
{
    QString list = {}; // the field's caption
    QString name = {};
    int rows = 0;              // that have it
    bool canBeCreated = false; // its own book asks for nothing but a name
    bool isCreated = false;
};

// What an import did, or would do.
struct ListReport
{
    std::vector<RowResult> rows;
    std::vector<MissingName> missing;

    int count(RowOutcome outcome) const;
    // The report for people, to be shown and kept: counts, names created or missing, then each
    // row that was not simply taken.
    QString text(const QString& title) const;
};

QString outcomeText(RowOutcome outcome);

} // namespace imports
