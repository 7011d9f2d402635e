#include "app/options.h"

#include <QCommandLineParser>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app {

namespace {

constexpr int kWrongUsage = 2;

const QCommandLineOption kHelp(QStringList{u"h"_s, u"help"_s});
const QCommandLineOption kVersion(QStringList{u"v"_s, u"version"_s});
const QCommandLineOption kDemo(u"demo"_s);
const QCommandLineOption kNewFile(u"new-file"_s);
const QCommandLineOption kReadOnly(u"read-only"_s);
const QCommandLineOption kNoLast(u"no-last"_s);

const QString kHelpText = uR"(Журнал посещаемости и успеваемости.

Использование: jurnal [параметры] [ФАЙЛ]

  ФАЙЛ           файл базы данных (*.mdb); без него открывается последний файл.
                 Если программа уже запущена, файл открывается в ее окне
  --new-file     создать новый файл базы данных
  --read-only    открыть файл только для чтения
  --no-last      не открывать последний файл
  --demo         открыть демонстрационный журнал
  -h, --help     показать эту справку
  -v, --version  показать версию
)"_s;

// The session manager's own option, "-session ID", says nothing that we keep.
QStringList withoutSession(QStringList arguments)
{
    if (const auto at = arguments.indexOf(u"-session"_s); at >= 0) {
        arguments.remove(at, std::min<qsizetype>(2, arguments.size() - at));
    }
    return arguments;
}

Parsed wrong(const QString& reason)
{
    return {{}, Reply{u"jurnal: %1\nСправка: jurnal --help\n"_s.arg(reason), kWrongUsage}};
}

QString contradiction(const Options& options)
{
    if (options.demo && (options.newFile || options.readOnly || !options.file.isEmpty())) {
        return u"--demo не сочетается с файлом, --new-file и --read-only."_s;
    }
    if (options.newFile && options.readOnly) {
        return u"--new-file не сочетается с --read-only."_s;
    }
    return {};
}

} // namespace

Parsed parseArguments(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.addOptions({kDemo, kNewFile, kReadOnly, kNoLast, kHelp, kVersion});
    if (!parser.parse(withoutSession(arguments))) {
        const QStringList unknown = parser.unknownOptionNames();
        return wrong(unknown.isEmpty() ? u"параметр задан неверно."_s // one with a value
                                       : u"неизвестный параметр «%1»."_s.arg(unknown.first()));
    }
    if (parser.isSet(kHelp)) {
        return {{}, Reply{kHelpText}};
    }
    if (parser.isSet(kVersion)) {
        return {{}, Reply{u"jurnal %1\n"_s.arg(QStringLiteral(JURNAL_VERSION))}};
    }
    QStringList files = parser.positionalArguments();
    Options options;
    options.demo = parser.isSet(kDemo);
    options.newFile = parser.isSet(kNewFile);
    options.readOnly = parser.isSet(kReadOnly);
    options.openLast = !parser.isSet(kNoLast);
    if (!files.isEmpty()) {
        options.file = files.takeFirst();
        options.ignored = files;
    }
    if (const QString reason = contradiction(options); !reason.isEmpty()) {
        return wrong(reason);
    }
    return {options, std::nullopt};
}

} // namespace app
