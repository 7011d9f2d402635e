#include "sheets/writetable.h"

#include "sheets/formats.h"

using namespace Qt::StringLiterals;

namespace sheets {
void writeTable(const QString& path, const Table& table, Existing existing)
{
    writeWhole(path, existing, [&](const QString& draft) {
        if (path.endsWith(u".csv"_s, Qt::CaseInsensitive))
            writeCsv(draft, table);
        else
            writeXlsx(draft, table);
    });
}

QString fileName(const QString& title)
{
    constexpr qsizetype kLongest = 100; // characters; the rest of the name and path need room
    QString name;
    for (const QChar letter : title.simplified())
        name += u"\\/:*?\"<>|"_s.contains(letter) ? QChar(u'-') : letter;
    while (name.startsWith(u'.'))
        name.remove(0, 1);
    return (name.isEmpty() ? u"Таблица"_s : name.left(kLongest).trimmed()) + u".xlsx"_s;
}

} // namespace sheets
