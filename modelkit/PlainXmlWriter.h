// SPDX-License-Identifier: MIT
// A whole XML document as UTF-8, put together without a stream writer. Not installed.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/XmlLayout.h"

#include <QtCore/QByteArray>
#include <QtCore/QLatin1String>
#include <QtCore/QString>

#include <cstddef>
#include <cstring>
#include <functional>
#include <limits>
#include <string_view>

namespace MODELKIT {

// What the XML declaration contains. The encoding is declared only when the text is written as bytes.
enum class Declare
{
    Version,
    Encoding
};

// Gives the same bytes as QXmlStreamWriter with the carriage returns of texts as references. What it cannot
// write in this way it leaves to the stream writer: then the document is of no use.
class MODELKIT_EXPORT PlainXmlWriter
{
public:
    // What fits into a QByteArray in all versions of Qt.
    static constexpr std::size_t largestDocument = std::numeric_limits<int>::max() - 64;

    // Takes a piece of the document, in order.
    using Drain = std::function<void(const QByteArray& piece)>;

    // With a drain, the document is never in memory as a whole. MaximalSize: of what is in memory.
    PlainXmlWriter(XmlLayout layout, Declare declare, std::size_t maximalSize = largestDocument,
                   Drain drain = nullptr);

    // The document after its last element, or the last piece of it. Null if a name is not plain, a text holds
    // a character that XML cannot carry, or the document is too large.
    QByteArray takeDocument();

    void startElement(const QString& name)
    {
        closeStartTag();
        breakLine();
        put('<');
        putName(name);
        m_isTagOpen = true;
        ++m_depth;
    }

    void endElement(const QString& name)
    {
        --m_depth;
        if (m_isTagOpen) {
            put("/>");
            m_isTagOpen = false;
            return;
        }
        breakLine();
        put("</");
        putName(name);
        put('>');
    }

    // Calls putText() for what stands in the element. Name: of ASCII letters.
    template <class PutText>
    void textElement(QLatin1String name, const PutText& putText)
    {
        closeStartTag();
        breakLine();
        const std::string_view plainName(name.data(), static_cast<std::size_t>(name.size()));
        put('<');
        put(plainName);
        put('>');
        putText();
        put("</");
        put(plainName);
        put('>');
    }

    // Inside a text element. Plain: characters that need no escapes.
    void put(std::string_view plain)
    {
        char* to = room(plain.size());
        std::memcpy(to, plain.data(), plain.size());
        m_end = to + plain.size();
    }

    // At least that many bytes; advance() tells the end of what was written there.
    char* room(std::size_t size)
    {
        if (static_cast<std::size_t>(m_limit - m_end) < size)
            grow(size);
        return m_end;
    }
    void advance(char* end) { m_end = end; }

    void putText(const QString& text);

private:
    void put(char character)
    {
        char* to = room(1);
        *to = character;
        m_end = to + 1;
    }

    void closeStartTag()
    {
        if (m_isTagOpen)
            put('>');
        m_isTagOpen = false;
    }

    void breakLine()
    {
        if (!m_isIndented)
            return;
        const auto blanks = static_cast<std::size_t>(m_depth) * 2;
        char* to = room(blanks + 1);
        *to++ = '\n';
        std::memset(to, ' ', blanks);
        m_end = to + blanks;
    }

    void putName(const QString& name);
    void grow(std::size_t size);

    const Drain m_drain;
    QByteArray m_bytes;
    char* m_end = nullptr;
    char* m_limit = nullptr;
    int m_depth = 0;
    const std::size_t m_maximalSize;
    const bool m_isIndented;
    // The start tag has no '>' yet: an element without content ends with "/>" instead.
    bool m_isTagOpen = false;
    bool m_isExact = true;
};

} // namespace MODELKIT
