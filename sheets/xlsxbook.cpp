#include "sheets/xlsxbook.h"

#include "data/convert.h"
#include "jet/error.h"

#include <QFile>
#include <QRegularExpression>

#include <memory>

using namespace Qt::StringLiterals;

namespace sheets {

void check(lxw_error error)
{
    if (error != LXW_NO_ERROR)
        throw jet::Error(jet::Fault::Io,
                         std::string("книгу нельзя записать: ") + lxw_strerror(error));
}

std::string cellText(QString text)
{
    constexpr qsizetype kLongestText = 32'767;
    static const QRegularExpression kControls(u"[\\x{0}-\\x{8}\\x{B}\\x{C}\\x{E}-\\x{1F}]"_s);
    text.remove(kControls);
    return data::toUtf8(text.left(kLongestText));
}

std::string sheetName(const QString& title)
{
    constexpr qsizetype kLongestName = 31;
    QString name = title;
    for (const QChar refused : u"[]:*?/\\"_s)
        name.replace(refused, u'-');
    name = name.left(kLongestName).trimmed();
    while (name.startsWith(u'\''))
        name.remove(0, 1);
    while (name.endsWith(u'\''))
        name.chop(1);
    return name.isEmpty() ? "Лист1" : cellText(name);
}

std::string headerText(const QString& text)
{
    constexpr qsizetype kLongestHeader = 200;
    return cellText(text.left(kLongestHeader).replace(u"&"_s, u"&&"_s));
}

void writeBook(const QString& path, bool rowByRow,
               const std::function<void(lxw_workbook& book)>& fill)
{
    lxw_workbook_options options{};
    options.constant_memory = rowByRow ? LXW_TRUE : LXW_FALSE;
    const std::string file = QFile::encodeName(path).toStdString();
    lxw_workbook* book = workbook_new_opt(file.c_str(), &options);
    if (!book)
        throw jet::Error(jet::Fault::Io, "книгу нельзя создать");
    // Closing writes the file and frees the book, whatever became of the rows.
    lxw_error closed = LXW_NO_ERROR;
    {
        const auto close = [&closed](lxw_workbook* open) { closed = workbook_close(open); };
        const std::unique_ptr<lxw_workbook, decltype(close)> guard(book, close);
        fill(*book);
    }
    check(closed);
}

} // namespace sheets
