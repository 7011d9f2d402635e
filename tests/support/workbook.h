#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// What another program would read in a workbook of one sheet.
struct Workbook
{
    QString sheet;           // its name
    QList<QStringList> rows; // texts; numbers and dates as "=45.5", empty cells ""
    QByteArray sheetXml;     // xl/worksheets/sheet1.xml
    QByteArray stylesXml;    // xl/styles.xml

    // Without rows when the file is no workbook.
    static Workbook read(const QString& path);
};
