#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// What another program would read on a sheet of a workbook.
struct Workbook
{
    QString sheet;           // its name
    QStringList sheets;      // the names of all
    QList<QStringList> rows; // texts; numbers and dates as "=45.5", empty cells ""
    QByteArray sheetXml;     // xl/worksheets/sheetN.xml
    QByteArray stylesXml;    // xl/styles.xml

    // Without rows when the file is no workbook.
    static Workbook read(const QString& path, int sheet = 1);
};
