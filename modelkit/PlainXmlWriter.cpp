// SPDX-License-Identifier: MIT
#include "modelkit/PlainXmlWriter.h"

#include <QtCore/QtGlobal>

#include <algorithm>
#include <new>
#include <utility>

namespace MODELKIT {

namespace {

// From this size on, a piece goes to the drain.
constexpr std::size_t drainedSize = std::size_t(64) << 10;

bool isNameCharacter(unsigned int code)
{
    return code - 'a' < 26 || code - 'A' < 26 || code - '0' < 10 || code == '_' || code == '-' || code == '.';
}

// The escape of a character that has one; empty for others.
std::string_view escapeOf(unsigned int code)
{
    switch (code) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '"':
        return "&quot;";
    // A reader reads a carriage return as a line break, unless it is written as a character reference.
    case '\r':
        return "&#13;";
    default:
        return {};
    }
}

// The most bytes for one character of a text.
constexpr std::size_t mostBytesOfCharacter = 6;

char* putBytes(char* to, std::initializer_list<unsigned int> bytes)
{
    for (const unsigned int byte : bytes)
        *to++ = static_cast<char>(byte);
    return to;
}

} // namespace

PlainXmlWriter::PlainXmlWriter(XmlLayout layout, Declare declare, std::size_t maximalSize, Drain drain)
    : m_drain(std::move(drain)), m_maximalSize(maximalSize), m_isIndented(layout == XmlLayout::Indented)
{
    put(declare == Declare::Encoding ? R"(<?xml version="1.0" encoding="UTF-8"?>)"
                                     : R"(<?xml version="1.0"?>)");
}

QByteArray PlainXmlWriter::takeDocument()
{
    put('\n');
    if (!m_isExact)
        return QByteArray();
    m_bytes.resize(static_cast<int>(m_end - m_bytes.constData()));
    m_end = m_limit = nullptr;
    return std::move(m_bytes);
}

void PlainXmlWriter::putName(const QString& name)
{
    char* to = room(static_cast<std::size_t>(name.size()));
    for (const QChar character : name) {
        const unsigned int code = character.unicode();
        if (!isNameCharacter(code))
            m_isExact = false;
        *to++ = static_cast<char>(code);
    }
    m_end = to;
}

void PlainXmlWriter::putText(const QString& text)
{
    constexpr std::size_t longestPiece = 1024;
    const QChar* at = text.constData();
    const QChar* const end = at + text.size();
    while (at != end) {
        const std::size_t size = std::min(static_cast<std::size_t>(end - at), longestPiece);
        const QChar* const endOfPiece = at + size;
        // A surrogate pair may go beyond the piece.
        char* to = room((size + 1) * mostBytesOfCharacter);
        while (at < endOfPiece) {
            const unsigned int code = at++->unicode();
            if (code < 0x80) {
                const std::string_view escape = escapeOf(code);
                if (!escape.empty()) {
                    std::memcpy(to, escape.data(), escape.size());
                    to += escape.size();
                    continue;
                }
                if (code < 0x20 && code != '\t' && code != '\n')
                    m_isExact = false;
                *to++ = static_cast<char>(code);
            } else if (code < 0x800) {
                to = putBytes(to, {0xC0 | code >> 6, 0x80 | (code & 0x3F)});
            } else if (!QChar::isSurrogate(code)) {
                if (code >= 0xFFFE)
                    m_isExact = false;
                to = putBytes(to, {0xE0 | code >> 12, 0x80 | (code >> 6 & 0x3F), 0x80 | (code & 0x3F)});
            } else if (QChar::isHighSurrogate(code) && at != end && at->isLowSurrogate()) {
                const unsigned int whole = QChar::surrogateToUcs4(static_cast<ushort>(code), at++->unicode());
                to = putBytes(to, {0xF0 | whole >> 18, 0x80 | (whole >> 12 & 0x3F),
                                   0x80 | (whole >> 6 & 0x3F), 0x80 | (whole & 0x3F)});
            } else {
                m_isExact = false;
            }
        }
        m_end = to;
    }
}

void PlainXmlWriter::grow(std::size_t size)
{
    std::size_t before = m_end ? static_cast<std::size_t>(m_end - m_bytes.constData()) : 0;
    if (m_drain && before >= drainedSize) {
        // A document that is of no use is not needed any more.
        if (m_isExact)
            m_drain(QByteArray::fromRawData(m_bytes.constData(), static_cast<int>(before)));
        m_end = m_bytes.data();
        before = 0;
        if (static_cast<std::size_t>(m_limit - m_end) >= size)
            return;
    }
    if (before + size > m_maximalSize) {
        // The stream writer may have room for more. What was written is of no use any more.
        m_isExact = false;
        before = 0;
    }
    const std::size_t needed = before + size;
    if (needed > m_maximalSize)
        throw std::bad_alloc();
    const std::size_t capacity = std::min(std::max<std::size_t>(needed * 2, 512), m_maximalSize);
    m_bytes.resize(static_cast<int>(capacity));
    m_end = m_bytes.data() + before;
    m_limit = m_bytes.data() + capacity;
}

} // namespace MODELKIT
