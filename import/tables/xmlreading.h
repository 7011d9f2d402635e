#pragma once

#include "jet/error.h"

#include <QByteArray>
#include <QXmlStreamReader>

namespace imports {

// Throws jet::Error unless the part was read to its end without a fault.
inline void requireSound(const QXmlStreamReader& xml)
{
    if (xml.hasError())
        throw jet::Error(jet::Fault::Damaged, "книга .xlsx повреждена");
}

// Calls `take` at each start of an element. Throws jet::Error for a part that is no XML.
template <class Take>
void readXml(const QByteArray& part, Take take)
{
    QXmlStreamReader xml(part);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::DTD)
            throw jet::Error(jet::Fault::Damaged, "книга .xlsx повреждена");
        if (xml.isStartElement())
            take(xml);
    }
    requireSound(xml);
}

} // namespace imports
