// SPDX-License-Identifier: MIT
// The two walks over an element of which reading consists. Not installed.
#pragma once

#include "modelkit/DocumentContext.h"
#include "modelkit/PlainXmlReader.h"
#include "modelkit/Quoted.h"

#include <QtCore/QString>
#include <QtCore/QXmlStreamReader>

#include <algorithm>

namespace MODELKIT {

// Reads the next token and counts it for the limits of the whole-document operation, if there is one.
inline QXmlStreamReader::TokenType readToken(QXmlStreamReader& reader, DocumentContext* context)
{
    const auto token = reader.readNext();
    if (context)
        context->CountToken(reader);
    return token;
}

// The limits of a plain document have been checked.
inline QXmlStreamReader::TokenType readToken(PlainXmlReader& reader, DocumentContext*)
{
    return reader.readNext();
}

// White space is not reported, even if it is written as character references or as CDATA.
inline void noticeTextBetween(const QXmlStreamReader& reader, DocumentContext* context)
{
    if (!context || !context->IsReporting() || reader.isWhitespace())
        return;
    const QString text = reader.text().toString();
    const auto isWhiteSpace = [](QChar character) {
        return character == QLatin1Char(' ') || character == QLatin1Char('\t')
               || character == QLatin1Char('\n') || character == QLatin1Char('\r');
    };
    if (!std::all_of(text.begin(), text.end(), isWhiteSpace))
        context->Report(ReadingReport::IgnoredText,
                        QStringLiteral("The text %1 between elements was ignored.")
                            .arg(abbreviatedInQuotes(text.trimmed())),
                        reader);
}

// Nobody reads a plain document who wants a report.
inline void noticeTextBetween(const PlainXmlReader&, DocumentContext*) {}

inline void noticeElementInText(const QXmlStreamReader& reader, DocumentContext* context)
{
    if (context && context->IsReporting())
        context->Report(
            ReadingReport::ElementInText,
            QStringLiteral("The element %1 inside a text was skipped.").arg(reader.name().toString()),
            reader);
}

// Calls readChild() for each start tag inside the element at whose start tag the reader is. Ends at the end
// tag of the same name, or at the end of the input.
template <class Reader, class Name, class ReadChild>
void walkElement(Reader& reader, DocumentContext* context, const Name& name, const ReadChild& readChild)
{
    if (!reader.isStartElement())
        return;
    while (true) {
        switch (readToken(reader, context)) {
        case QXmlStreamReader::StartElement:
            readChild();
            if (reader.atEnd())
                return;
            break;
        case QXmlStreamReader::EndElement:
            if (reader.name() == name)
                return;
            break;
        case QXmlStreamReader::Characters:
            noticeTextBetween(reader, context);
            break;
        default:
            if (reader.atEnd())
                return;
        }
    }
}

// Calls append() with each piece of the text of the element at whose start tag the reader is, without the
// text of child elements. Ends at the element's own end tag, or at the end of the input.
template <class Append>
void walkText(QXmlStreamReader& reader, DocumentContext* context, const Append& append)
{
    if (!reader.isStartElement())
        return;
    int depth = 0;
    while (true) {
        switch (readToken(reader, context)) {
        case QXmlStreamReader::StartElement:
            if (depth++ == 0)
                noticeElementInText(reader, context);
            break;
        case QXmlStreamReader::EndElement:
            if (depth-- == 0)
                return;
            break;
        case QXmlStreamReader::Characters:
        case QXmlStreamReader::EntityReference:
            if (depth == 0)
                append(reader.text());
            break;
        default:
            if (reader.atEnd())
                return;
        }
    }
}

} // namespace MODELKIT
