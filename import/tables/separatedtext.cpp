#include "import/tables/separatedtext.h"

#include "data/convert.h"
#include "import/tables/tablelimits.h"
#include "jet/error.h"
#include "jet/storage/jet3/codepage.h"

#include <QStringDecoder>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

constexpr int kRowsToJudge = 20;

// Steps through a text row by row.
class RowScanner
{
public:
    RowScanner(const QString& text, QChar separator)
        : m_text(text)
        , m_separator(separator)
    {}

    bool atEnd() const { return m_at >= m_text.size(); }
    // True when the last row ended inside quotes.
    bool isOpen() const { return m_open; }

    QStringList next()
    {
        QStringList cells;
        for (;;) {
            cells << cell();
            if (atEnd())
                return cells;
            const QChar sign = m_text[m_at++];
            if (sign == m_separator) {
                checkColumn(cells.size());
                continue;
            }
            if (sign == u'\r' && !atEnd() && m_text[m_at] == u'\n')
                ++m_at;
            return cells;
        }
    }

private:
    bool endsCell() const
    {
        return atEnd() || m_text[m_at] == m_separator || m_text[m_at] == u'\n'
               || m_text[m_at] == u'\r';
    }

    // Leaves the position at the sign that ends the cell.
    QString cell()
    {
        QString text;
        if (!atEnd() && m_text[m_at] == u'"')
            text = quoted();
        const qsizetype begin = m_at;
        while (!endsCell())
            ++m_at;
        return text + m_text.sliced(begin, m_at - begin);
    }

    QString quoted()
    {
        QString text;
        for (++m_at;; ++m_at) {
            const qsizetype end = m_text.indexOf(u'"', m_at);
            if (end < 0) {
                m_open = true;
                m_at = m_text.size();
                return text;
            }
            text += QStringView(m_text).sliced(m_at, end - m_at);
            m_at = end + 1;
            if (atEnd() || m_text[m_at] != u'"')
                return text;
            text += u'"';
        }
    }

    const QString& m_text;
    QChar m_separator;
    qsizetype m_at = 0;
    bool m_open = false;
};

bool isBlank(const QStringList& cells)
{
    return std::ranges::all_of(cells, [](const QString& cell) { return cell.trimmed().isEmpty(); });
}

// How many rows are cut into the same number of cells, more than one, and which number it is;
// zeros unless most rows are.
using Evenness = std::pair<int, qsizetype>;

Evenness evenness(const QString& text, QChar separator)
{
    RowScanner scanner(text, separator);
    std::vector<qsizetype> widths;
    while (!scanner.atEnd() && widths.size() < kRowsToJudge) {
        try {
            const QStringList cells = scanner.next();
            if (!isBlank(cells))
                widths.push_back(cells.size());
        } catch (const jet::Error&) {
            return {}; // far too many columns
        }
    }
    Evenness best;
    for (const qsizetype width : widths)
        if (width > 1)
            best = std::max(best,
                            Evenness{static_cast<int>(std::ranges::count(widths, width)), width});
    return best.first * 2 > static_cast<int>(widths.size()) ? best : Evenness();
}

// A spreadsheet's first line "sep=;", which is no row.
std::optional<QChar> namedSeparator(const QString& text)
{
    if (text.size() < 6 || !text.startsWith(u"sep="_s) || (text[5] != u'\r' && text[5] != u'\n'))
        return {};
    return text[4];
}

QString utf16(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf16);
    return decoder(bytes);
}

} // namespace

QString decodedText(const QByteArray& bytes)
{
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF"))
        return utf16(bytes);
    const bool isText = std::ranges::none_of(bytes, [](char byte) {
        return byte >= 0 && byte < ' ' && byte != '\t' && byte != '\n' && byte != '\r'
               && byte != '\f' && byte != '\v' && byte != '\x1' && byte != '\x1a';
    });
    if (!isText)
        throw jet::Error(jet::Fault::Unsupported,
                         "файл не является таблицей: подходят текст с разделителями (.csv), книга "
                         ".xlsx и база данных .mdb");
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8(bytes);
    if (!utf8.hasError())
        return text;
    constexpr std::uint16_t kCyrillic = 1251;
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
    return data::fromUtf8(
        jet::jet3::CodePage(kCyrillic).toUtf8({data, static_cast<std::size_t>(bytes.size())}));
}

QChar separatorOf(const QString& text)
{
    QChar chosen = u';';
    Evenness best;
    for (const QChar separator : u";\t,|"_s) {
        const Evenness found = evenness(text, separator);
        if (found > best) {
            best = found;
            chosen = separator;
        }
    }
    return chosen;
}

std::vector<TextRow> separatedRows(const QString& text, QChar separator)
{
    RowCollector rows;
    RowScanner scanner(text, separator);
    for (int number = 1; !scanner.atEnd(); ++number) {
        QStringList cells = scanner.next();
        if (scanner.isOpen())
            throw jet::Error(jet::Fault::Damaged,
                             "в строке " + std::to_string(number) + " не закрыты кавычки");
        rows.add(number, std::move(cells));
    }
    return rows.take();
}

TextTable readSeparated(const QByteArray& bytes)
{
    QString text = decodedText(bytes);
    TextTable table;
    if (const auto separator = namedSeparator(text)) {
        table.rows = separatedRows(text.sliced(text.indexOf(u'\n') + 1), *separator);
        for (TextRow& row : table.rows)
            ++row.number; // the line that names the separator
    } else {
        table.rows = separatedRows(text, separatorOf(text));
    }
    return table;
}

} // namespace imports
