// The two walks over an element that reading consists of. Not installed.
#pragma once

#include "modelkit/ReadingContext.h"

#include <QtCore/QString>
#include <QtCore/QXmlStreamReader>

namespace MODELKIT {

// Reads the next token, within the limits of the whole-document operation, if there is one.
inline void readToken(QXmlStreamReader& reader, ReadingContext* context)
{
    reader.readNext();
    if (context)
        context->CountToken(reader);
}

// Calls readChild() for each start element inside the element on whose start the reader stands. Ends on
// the end element of the same name, or at the end of the input.
template <class Name, class ReadChild>
void walkElement(QXmlStreamReader& reader, ReadingContext* context, const Name& name,
                 const ReadChild& readChild)
{
    if (!reader.isStartElement())
        return;
    while (!reader.atEnd()) {
        readToken(reader, context);
        if (reader.isStartElement())
            readChild();
        else if (reader.isEndElement() && reader.name() == name)
            return;
    }
}

// Calls append() with each piece of the text of the element on whose start the reader stands, without
// the text of child elements. Ends on the element's own end, or at the end of the input.
template <class Append>
void walkText(QXmlStreamReader& reader, ReadingContext* context, const Append& append)
{
    if (!reader.isStartElement())
        return;
    int depth = 0;
    while (!reader.atEnd()) {
        readToken(reader, context);
        if (reader.isStartElement()) {
            ++depth;
        } else if (reader.isEndElement()) {
            if (depth-- == 0)
                return;
        } else if (depth == 0 && (reader.isCharacters() || reader.isEntityReference())) {
            append(reader.text());
        }
    }
}

} // namespace MODELKIT
