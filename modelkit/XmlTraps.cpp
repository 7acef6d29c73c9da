// SPDX-License-Identifier: MIT
#include "modelkit/XmlTraps.h"

#include <QtCore/QChar>

#include <algorithm>
#include <string_view>

namespace MODELKIT {

namespace {

bool isSame(char ascii, QChar character) { return character == QLatin1Char(ascii); }

// Walks over the characters of a document.
class Scanner
{
public:
    Scanner(const QChar* begin, const QChar* end) : m_begin(begin), m_at(begin), m_end(end) {}

    // Goes to the next markup; false when there is none.
    bool findMarkup() { return find('<'); }

    bool skip(std::string_view text)
    {
        if (!startsWith(m_at, text))
            return false;
        m_at += text.size();
        return true;
    }

    // Goes to the character after the text, or to the end.
    void skipBehind(std::string_view text)
    {
        while (find(text.front())) {
            if (skip(text))
                return;
            ++m_at;
        }
    }

    // Skips the tag; false when it has more attributes than that.
    bool skipTag(int maximalAttributes)
    {
        int attributes = 0;
        unsigned int quote = 0;
        for (++m_at; m_at != m_end; ++m_at) {
            const unsigned int code = m_at->unicode();
            // Not well-formed inside a tag, not even in a quoted value.
            if (code == '<')
                return true;
            if (quote != 0) {
                if (code == quote)
                    quote = 0;
            } else if (code == '"' || code == '\'') {
                quote = code;
            } else if (code == '>') {
                return true;
            } else if (code == '=' && ++attributes > maximalAttributes) {
                return false;
            }
        }
        return true;
    }

    qint64 position() const { return m_at - m_begin; }

private:
    bool find(char character)
    {
        m_at = std::find(m_at, m_end, QLatin1Char(character));
        return m_at != m_end;
    }

    bool startsWith(const QChar* at, std::string_view text) const
    {
        return static_cast<std::size_t>(m_end - at) >= text.size()
               && std::equal(text.begin(), text.end(), at, isSame);
    }

    const QChar* m_begin;
    const QChar* m_at;
    const QChar* m_end;
};

} // namespace

Trap findTrap(const QString& text, int maximalAttributes)
{
    Scanner scanner(text.constData(), text.constData() + text.size());
    while (scanner.findMarkup()) {
        const qint64 position = scanner.position();
        if (scanner.skip("<!--")) {
            scanner.skipBehind("-->");
        } else if (scanner.skip("<![CDATA[")) {
            scanner.skipBehind("]]>");
        } else if (scanner.skip("<?")) {
            scanner.skipBehind("?>");
        } else if (scanner.skip("<!DOCTYPE")) {
            // Some readers accept it anywhere.
            return {Trap::Doctype, position};
        } else if (!scanner.skipTag(maximalAttributes)) {
            return {Trap::Attributes, position};
        }
    }
    return {};
}

} // namespace MODELKIT
