#include "import/tables/workbook.h"

#include "data/convert.h"
#include "import/tables/cellformats.h"
#include "import/tables/sheetrows.h"
#include "import/tables/xmlreading.h"
#include "import/tables/zipparts.h"

#include <QDir>
#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace imports {
namespace {

struct Relation
{
    QString kind; // the last part of its type
    QString part; // the name of the part it leads to
};
using Relations = QHash<QString, Relation>; // by their name

struct Sheet
{
    QString name;
    QString relation;
};

QByteArray required(ZipParts& parts, const QString& name)
{
    auto part = parts.read(name);
    if (!part)
        throw jet::Error(jet::Fault::Damaged, "это не книга .xlsx или она повреждена");
    return *std::move(part);
}

// Those of a part: they stand in a folder beside it, and name parts from its own folder.
Relations relationsOf(ZipParts& parts, const QString& part)
{
    const QString folder = part.section(u'/', 0, -2);
    const QString prefix = folder.isEmpty() ? QString() : folder + u'/';
    Relations relations;
    readXml(required(parts, prefix + u"_rels/"_s + part.section(u'/', -1) + u".rels"_s),
            [&](const QXmlStreamReader& xml) {
                if (xml.name() != u"Relationship")
                    return;
                const QXmlStreamAttributes attributes = xml.attributes();
                const QString target = attributes.value("Target").toString();
                relations.insert(attributes.value("Id").toString(),
                                 {attributes.value("Type").toString().section(u'/', -1),
                                  target.startsWith(u'/') ? target.sliced(1)
                                                          : QDir::cleanPath(prefix + target)});
            });
    return relations;
}

// "" when there is none of that kind.
QString partOfKind(const Relations& relations, const QString& kind)
{
    const auto found = std::ranges::find(relations, kind, &Relation::kind);
    return found == relations.end() ? QString() : found->part;
}

class Book
{
public:
    explicit Book(const QString& path)
        : m_parts(path)
    {
        const QString book = partOfKind(relationsOf(m_parts, {}), u"officeDocument"_s);
        m_relations = relationsOf(m_parts, book);
        if (const auto styles = m_parts.read(partOfKind(m_relations, u"styles"_s)))
            m_formats = CellFormats(*styles);
        readXml(required(m_parts, book), [this](const QXmlStreamReader& xml) {
            const QXmlStreamAttributes attributes = xml.attributes();
            if (xml.name() == u"sheet")
                m_sheets.push_back({attributes.value("name").toString(), relationOf(attributes)});
            else if (xml.name() == u"workbookPr"
                     && (attributes.value("date1904") == u"1"
                         || attributes.value("date1904") == u"true"))
                m_formats.countFrom1904();
        });
        if (m_sheets.empty())
            throw jet::Error(jet::Fault::Damaged, "в книге .xlsx нет листов");
    }

    TextTable read(const QString& name)
    {
        TextTable table;
        for (const Sheet& sheet : m_sheets)
            table.sheets << sheet.name;
        const auto chosen = name.isEmpty()
                                ? m_sheets.begin()
                                : std::ranges::find_if(m_sheets, [&](const Sheet& each) {
                                      return each.name.compare(name, Qt::CaseInsensitive) == 0;
                                  });
        if (chosen == m_sheets.end())
            throw jet::Error(jet::Fault::UnknownName,
                             data::toUtf8(u"в книге нет листа \"%1\", есть: %2"_s.arg(
                                 name, table.sheets.join(u", "_s))));
        table.sheet = chosen->name;
        QStringList texts;
        if (const auto shared = m_parts.read(partOfKind(m_relations, u"sharedStrings"_s)))
            texts = sharedTexts(*shared);
        const QByteArray sheet = required(m_parts, m_relations.value(chosen->relation).part);
        table.rows = sheetRows(sheet, texts, m_formats);
        return table;
    }

private:
    // The attribute's prefix is up to the writer; "sheetId" has none.
    static QString relationOf(const QXmlStreamAttributes& attributes)
    {
        for (const QXmlStreamAttribute& attribute : attributes)
            if (attribute.name() == u"id" && !attribute.prefix().isEmpty())
                return attribute.value().toString();
        return {};
    }

    ZipParts m_parts;
    Relations m_relations;
    CellFormats m_formats;
    std::vector<Sheet> m_sheets;
};

} // namespace

TextTable readWorkbook(const QString& path, const QString& sheet)
{
    return Book(path).read(sheet);
}

} // namespace imports
