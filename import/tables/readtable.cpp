#include "import/tables/readtable.h"

#include "data/convert.h"
#include "import/tables/databasetable.h"
#include "import/tables/separatedtext.h"
#include "import/tables/workbook.h"
#include "jet/error.h"
#include "jet/storage/filekind.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

constexpr qint64 kFirstBytes = 4096;
constexpr qint64 kLargestText = qint64{64} << 20; // bytes

jet::FileKind kindOf(const QByteArray& start)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(start.constData());
    return jet::kindOf({bytes, static_cast<std::size_t>(start.size())});
}

[[noreturn]] void fail(jet::Fault fault, const QString& clause)
{
    throw jet::Error(fault, data::toUtf8(clause));
}

} // namespace

TextTable readTable(const QString& path, const QString& sheet)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(jet::Fault::NotFound,
             u"файл \"%1\" нельзя прочитать: %2"_s.arg(path, file.errorString()));
    const QByteArray start = file.peek(kFirstBytes);
    if (start.startsWith("PK\x03\x04"))
        return readWorkbook(path, sheet);
    if (kindOf(start) != jet::FileKind::Foreign)
        return readDatabaseTable(path, sheet);
    if (start.startsWith("\xD0\xCF\x11\xE0"))
        fail(jet::Fault::Unsupported, u"это книга старого Excel (.xls): сохраните ее как .xlsx"_s);
    if (!sheet.isEmpty())
        fail(jet::Fault::UnknownName, u"в текстовом файле нет листов"_s);
    if (file.size() > kLargestText)
        fail(jet::Fault::Limit, u"файл слишком большой для списка"_s);
    return readSeparated(file.readAll());
}

} // namespace imports
