#include "data/convert.h"
#include "jet/error.h"
#include "sheets/formats.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace sheets {
namespace {

QByteArray field(const QString& text)
{
    QByteArray bytes = text.toUtf8();
    const bool quoted = std::ranges::any_of(text, [](QChar letter) {
        return letter == u';' || letter == u'"' || letter == u'\n' || letter == u'\r';
    });
    if (!quoted && text == text.trimmed())
        return bytes;
    return '"' + bytes.replace('"', "\"\"") + '"';
}

} // namespace

void writeCsv(const QString& path, const Table& table)
{
    QFile file(path);
    const auto check = [&file](bool fine) {
        if (!fine)
            throw jet::Error(jet::Fault::Io,
                             "файл нельзя записать: " + data::toUtf8(file.errorString()));
    };
    check(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    check(file.write("\xEF\xBB\xBF") > 0);
    QByteArrayList fields;
    for (const Column& column : table.columns)
        fields << field(column.head);
    check(file.write(fields.join(';') + "\r\n") > 0);
    for (int row = 0; row < table.rows; ++row) {
        fields.clear();
        for (int column = 0; column < static_cast<int>(table.columns.size()); ++column)
            fields << field(table.text(row, column));
        check(file.write(fields.join(';') + "\r\n") > 0);
    }
    check(file.flush());
}

} // namespace sheets
