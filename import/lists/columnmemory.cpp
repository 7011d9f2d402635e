#include "import/lists/columnmemory.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace imports {

ColumnMemory ColumnMemory::fromJson(const QByteArray& json)
{
    ColumnMemory memory;
    const QJsonObject names = QJsonDocument::fromJson(json).object();
    for (auto name = names.begin(); name != names.end(); ++name)
        memory.m_names.insert(name.key(), name.value().toString());
    return memory;
}

QByteArray ColumnMemory::toJson() const
{
    QJsonObject names;
    for (auto name = m_names.begin(); name != m_names.end(); ++name)
        names.insert(name.key(), name.value());
    return QJsonDocument(names).toJson(QJsonDocument::Compact);
}

void ColumnMemory::learn(refbooks::Book book, const std::vector<refbooks::RecordField>& fields,
                         const TextTable& table, const ColumnMatch& chosen)
{
    const QStringList& heads = table.rows[chosen.headRow].cells;
    const std::vector<int> guessed = guessedFields(book, fields, heads);
    for (std::size_t column = 0; column < chosen.fields.size(); ++column) {
        const QString head = plainHead(heads.value(static_cast<qsizetype>(column)));
        if (head.isEmpty() || chosen.fields[column] == guessed[column])
            m_names.remove(head);
        else
            m_names.insert(head, nameOfField(fields, chosen.fields[column]));
    }
}

} // namespace imports
