// SPDX-License-Identifier: MIT
// Reading XML documents in the plain spelling that nearly all of them have. Not installed.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QByteArray>
#include <QtCore/QLatin1String>
#include <QtCore/QXmlStreamReader>

#include <optional>
#include <string_view>

namespace MODELKIT {

// A whole document in UTF-8 of elements and texts. Names are of ASCII letters, digits and "_-.". There are no
// attributes, comments, CDATA sections, processing instructions except the usual declaration, and references
// except "&lt;", "&gt;", "&amp;", "&quot;", "&apos;" and "&#13;".
class MODELKIT_EXPORT PlainXml
{
public:
    // The document, if it is plain, well-formed and nested no deeper than that. Whoever gets none asks
    // QXmlStreamReader, which knows all of XML and says what is wrong.
    static std::optional<PlainXml> Find(std::string_view utf8, int nestingDepth);

    // From the "<" of the root element on.
    std::string_view fromRoot() const { return m_fromRoot; }

private:
    explicit PlainXml(std::string_view fromRoot) : m_fromRoot(fromRoot) {}

    std::string_view m_fromRoot;
};

// Goes over the tags of a plain document, as QXmlStreamReader goes over its tokens. The document needs no
// checks any more, so there are no errors.
class MODELKIT_EXPORT PlainXmlReader
{
public:
    // Begins at the start tag of the root element.
    explicit PlainXmlReader(const PlainXml& document);

    // The next tag: a start tag, an end tag, or the end of the document. Passes over texts.
    QXmlStreamReader::TokenType readNext();

    bool isStartElement() const { return m_token == QXmlStreamReader::StartElement; }
    bool isEndElement() const { return m_token == QXmlStreamReader::EndElement; }
    bool atEnd() const { return m_token == QXmlStreamReader::EndDocument; }
    // Empty at the end of the document.
    QLatin1String name() const { return QLatin1String(m_name.data(), static_cast<int>(m_name.size())); }

    // The text of the element at whose start tag the reader is, in UTF-8 and without the texts of child
    // elements. Goes to its end tag. The text is valid until the next call.
    std::string_view readText();

    // Goes to the end of the document.
    void stop();

private:
    void appendText();
    void readTag();

    const char* m_at;
    const char* const m_end;
    QXmlStreamReader::TokenType m_token = QXmlStreamReader::StartElement;
    std::string_view m_name;
    // Whether the start tag is also the end tag, which comes next.
    bool m_isEmpty = false;
    // How many elements are open.
    int m_depth = 0;
    // A text that does not stand in the document in one piece as it is meant.
    QByteArray m_text;
};

} // namespace MODELKIT
