// SPDX-License-Identifier: MIT
#include "modelkit/PlainXmlReader.h"

#include "modelkit/Utf8.h"

#include <QtCore/QVarLengthArray>

#include <array>
#include <cstring>
#include <limits>

namespace MODELKIT {

namespace {

struct Reference
{
    std::string_view written;
    char character;
};

constexpr Reference references[] = {{"&lt;", '<'},   {"&gt;", '>'},    {"&amp;", '&'},
                                    {"&quot;", '"'}, {"&apos;", '\''}, {"&#13;", '\r'}};

// Sizes of texts are of the type int.
constexpr std::size_t largestDocument = std::numeric_limits<int>::max();

bool startsWith(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

// The reference with which the text begins; null if it begins with another one.
const Reference* referenceAt(std::string_view text)
{
    for (const Reference& reference : references)
        if (startsWith(text, reference.written))
            return &reference;
    return nullptr;
}

// What a byte may be in a plain document.
enum Role : unsigned char
{
    Refused,
    InText,   // also in white space
    InName,   // also in texts
    Reviewed, // in texts, after a look at what follows
    Opening,  // "<"
};

constexpr std::array<Role, 256> roles = [] {
    std::array<Role, 256> all{};
    for (unsigned int byte = 0; byte < all.size(); ++byte) {
        if (byte == '\t' || byte == '\n' || byte == '\r' || byte >= 0x20)
            all[byte] = InText;
        if ((byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9')
            || byte == '_' || byte == '-' || byte == '.')
            all[byte] = InName;
    }
    all['<'] = Opening;
    // An end of a CDATA section must not stand in a text.
    all['>'] = Refused;
    all['&'] = Reviewed;
    // U+FFFE and U+FFFF are no characters.
    all[0xEF] = Reviewed;
    return all;
}();

Role roleOf(char byte) { return roles[static_cast<unsigned char>(byte)]; }

bool isBlank(char byte) { return byte == ' ' || byte == '\n' || byte == '\t' || byte == '\r'; }

// Looks through a document, from its root element on.
class PlainXmlCheck
{
public:
    PlainXmlCheck(std::string_view text, int nestingDepth)
        : m_at(text.data()), m_end(text.data() + text.size()), m_nestingDepth(nestingDepth)
    {}

    bool isPlain()
    {
        do {
            if (!passTag())
                return false;
            if (m_open.isEmpty())
                return isBlankToTheEnd();
        } while (passText());
        return false;
    }

private:
    std::string_view rest() const { return {m_at, static_cast<std::size_t>(m_end - m_at)}; }

    // Goes to the next "<"; false if the text is not plain, or the document ends.
    bool passText()
    {
        while (m_at != m_end) {
            switch (roleOf(*m_at)) {
            case InText:
            case InName:
                ++m_at;
                break;
            case Opening:
                return true;
            case Reviewed:
                if (!passReviewed())
                    return false;
                break;
            case Refused:
                return false;
            }
        }
        return false;
    }

    bool passReviewed()
    {
        if (*m_at == '&') {
            const Reference* reference = referenceAt(rest());
            if (!reference)
                return false;
            m_at += reference->written.size();
            return true;
        }
        if (startsWith(rest(), "\xEF\xBF\xBE") || startsWith(rest(), "\xEF\xBF\xBF"))
            return false;
        ++m_at;
        return true;
    }

    // The name of a tag; empty if there is none.
    std::string_view passName()
    {
        const char* const begin = m_at;
        while (m_at != m_end && roleOf(*m_at) == InName)
            ++m_at;
        return {begin, static_cast<std::size_t>(m_at - begin)};
    }

    bool pass(char byte)
    {
        if (m_at == m_end || *m_at != byte)
            return false;
        ++m_at;
        return true;
    }

    bool passTag()
    {
        if (!pass('<'))
            return false;
        if (pass('/')) {
            const std::string_view name = passName();
            if (m_open.isEmpty() || name != m_open.last())
                return false;
            m_open.removeLast();
            return pass('>');
        }
        const std::string_view name = passName();
        // Neither digits nor "-" and "." begin a name. Readers refuse very long ones.
        constexpr std::size_t longestName = 255;
        if (name.empty() || name.size() > longestName || !(name.front() == '_' || name.front() >= 'A')
            || m_open.size() >= m_nestingDepth)
            return false;
        if (pass('/'))
            return pass('>');
        m_open.append(name);
        return pass('>');
    }

    bool isBlankToTheEnd()
    {
        while (m_at != m_end && isBlank(*m_at))
            ++m_at;
        return m_at == m_end;
    }

    const char* m_at;
    const char* const m_end;
    const int m_nestingDepth;
    // The names of the elements that have begun.
    QVarLengthArray<std::string_view, 32> m_open;
};

void remove(std::string_view& text, std::string_view beginning)
{
    if (startsWith(text, beginning))
        text.remove_prefix(beginning.size());
}

} // namespace

std::optional<PlainXml> PlainXml::Find(std::string_view utf8, int nestingDepth)
{
    if (utf8.size() > largestDocument)
        return std::nullopt;
    std::string_view text = utf8;
    remove(text, "\xEF\xBB\xBF");
    for (const std::string_view declaration :
         {R"(<?xml version="1.0"?>)", R"(<?xml version="1.0" encoding="UTF-8"?>)",
          R"(<?xml version="1.0" encoding="utf-8"?>)"}) {
        if (!startsWith(text, declaration))
            continue;
        text.remove_prefix(declaration.size());
        while (!text.empty() && isBlank(text.front()))
            text.remove_prefix(1);
        break;
    }
    if (!PlainXmlCheck(text, nestingDepth).isPlain()
        || wellFormedUtf8(text.data(), static_cast<qint64>(text.size())) != static_cast<qint64>(text.size()))
        return std::nullopt;
    return PlainXml(text);
}

PlainXmlReader::PlainXmlReader(const PlainXml& document)
    : m_at(document.fromRoot().data()), m_end(m_at + document.fromRoot().size())
{
    readTag();
}

QXmlStreamReader::TokenType PlainXmlReader::readNext()
{
    if (m_isEmpty) {
        m_isEmpty = false;
        m_token = QXmlStreamReader::EndElement;
        --m_depth;
        return m_token;
    }
    if (m_depth == 0) {
        m_token = QXmlStreamReader::EndDocument;
        m_name = {};
        return m_token;
    }
    m_at = static_cast<const char*>(std::memchr(m_at, '<', static_cast<std::size_t>(m_end - m_at)));
    readTag();
    return m_token;
}

// The tag that begins at the current place.
void PlainXmlReader::readTag()
{
    const bool isEnd = m_at[1] == '/';
    const char* const begin = m_at + (isEnd ? 2 : 1);
    m_at = begin;
    while (roleOf(*m_at) == InName)
        ++m_at;
    m_name = {begin, static_cast<std::size_t>(m_at - begin)};
    m_isEmpty = *m_at == '/';
    m_at += m_isEmpty ? 2 : 1;
    m_token = isEnd ? QXmlStreamReader::EndElement : QXmlStreamReader::StartElement;
    m_depth += isEnd ? -1 : 1;
}

std::string_view PlainXmlReader::readText()
{
    if (m_isEmpty) {
        readNext();
        return {};
    }
    const char* const begin = m_at;
    bool isVerbatim = true;
    for (; *m_at != '<'; ++m_at)
        if (*m_at == '&' || *m_at == '\r')
            isVerbatim = false;
    if (isVerbatim && m_at[1] == '/') {
        const std::string_view text(begin, static_cast<std::size_t>(m_at - begin));
        readTag();
        return text;
    }
    m_at = begin;
    m_text.clear();
    for (int depth = 0; depth >= 0; depth += readNext() == QXmlStreamReader::StartElement ? 1 : -1)
        if (depth == 0 && !m_isEmpty)
            appendText();
    return {m_text.constData(), static_cast<std::size_t>(m_text.size())};
}

// Appends what is in front of the next tag as a reader understands it.
void PlainXmlReader::appendText()
{
    while (*m_at != '<') {
        if (*m_at == '&') {
            const Reference& reference = *referenceAt({m_at, static_cast<std::size_t>(m_end - m_at)});
            m_text.append(reference.character);
            m_at += reference.written.size();
        } else if (*m_at == '\r') {
            // Every line end is a line feed.
            m_text.append('\n');
            m_at += m_at[1] == '\n' ? 2 : 1;
        } else {
            m_text.append(*m_at++);
        }
    }
}

void PlainXmlReader::stop()
{
    m_depth = 0;
    m_isEmpty = false;
    readNext();
}

} // namespace MODELKIT
