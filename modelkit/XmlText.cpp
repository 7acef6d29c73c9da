#include "modelkit/XmlText.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <string_view>

namespace MODELKIT {

namespace {

unsigned int codeOf(char character) { return static_cast<unsigned char>(character); }
unsigned int codeOf(QChar character) { return character.unicode(); }

// Characters of a document. Markup is ASCII, in which a character is the same in all encodings that are
// looked at.
template <class Char>
class Scanner
{
public:
    Scanner(const Char* begin, const Char* end) : m_begin(begin), m_at(begin), m_end(end) {}

    // Goes to the next markup; false when there is none.
    bool findMarkup() { return find('<'); }

    bool skip(std::string_view text)
    {
        if (!startsWith(m_at, text))
            return false;
        m_at += text.size();
        return true;
    }

    // Goes behind the text, or to the end.
    void skipBehind(std::string_view text)
    {
        while (find(text.front())) {
            if (skip(text))
                return;
            ++m_at;
        }
    }

    // Leaves the tag; false when it has more attributes than that.
    bool skipTag(int maximalAttributes)
    {
        int attributes = 0;
        unsigned int quote = 0;
        for (++m_at; m_at != m_end; ++m_at) {
            const unsigned int code = codeOf(*m_at);
            // Not allowed there, not even in a quoted value.
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
        m_at = std::find_if(m_at, m_end, [character](Char c) { return codeOf(c) == codeOf(character); });
        return m_at != m_end;
    }

    bool startsWith(const Char* at, std::string_view text) const
    {
        return static_cast<std::size_t>(m_end - at) >= text.size()
               && std::equal(text.begin(), text.end(), at,
                             [](char a, Char b) { return codeOf(a) == codeOf(b); });
    }

    const Char* m_begin;
    const Char* m_at;
    const Char* m_end;
};

template <class Char>
Trap scan(const Char* begin, const Char* end, int maximalAttributes)
{
    Scanner<Char> scanner(begin, end);
    while (scanner.findMarkup()) {
        const qint64 position = scanner.position();
        if (scanner.skip("<!--")) {
            scanner.skipBehind("-->");
        } else if (scanner.skip("<![CDATA[")) {
            scanner.skipBehind("]]>");
        } else if (scanner.skip("<?")) {
            scanner.skipBehind("?>");
        } else if (scanner.skip("<!DOCTYPE")) {
            // There are readers that take it anywhere.
            return {Trap::Doctype, position};
        } else if (!scanner.skipTag(maximalAttributes)) {
            return {Trap::Attributes, position};
        }
    }
    return {};
}

bool hasUtf16Mark(const QByteArray& bytes)
{
    return bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF");
}

// A document begins with "<", so that the mark can be missing.
bool isUtf16(const QByteArray& bytes)
{
    return hasUtf16Mark(bytes) || bytes.startsWith(QByteArray("\0<", 2))
           || bytes.startsWith(QByteArray("<\0", 2));
}

QString fromUtf16(const QByteArray& bytes)
{
    const bool isBigEndian = bytes.startsWith('\xFE') || bytes.startsWith('\0');
    const int mark = hasUtf16Mark(bytes) ? 2 : 0;
    const auto size = (bytes.size() - mark) / 2;
    QString text(size, Qt::Uninitialized);
    const char* from = bytes.constData() + mark;
    for (QChar& character : text) {
        character = QChar(isBigEndian ? qFromBigEndian<quint16>(from) : qFromLittleEndian<quint16>(from));
        from += 2;
    }
    return text;
}

} // namespace

QString decodedXml(const QByteArray& bytes)
{
    if (isUtf16(bytes))
        return fromUtf16(bytes);
    const QByteArray declaration =
        bytes.left(static_cast<int>(std::max<qint64>(bytes.indexOf('>'), 0))).toLower();
    const bool namesAnother =
        declaration.startsWith("<?xml") && declaration.contains("encoding") && !declaration.contains("utf-8");
    return namesAnother ? QString::fromLatin1(bytes) : QString::fromUtf8(bytes);
}

Trap findTrap(const QByteArray& bytes, int maximalAttributes)
{
    if (isUtf16(bytes))
        return findTrap(fromUtf16(bytes), maximalAttributes);
    Trap trap = scan(bytes.constData(), bytes.constData() + bytes.size(), maximalAttributes);
    if (trap.kind != Trap::None)
        trap.characterOffset = decodedXml(bytes.left(static_cast<int>(trap.characterOffset))).size();
    return trap;
}

Trap findTrap(const QString& text, int maximalAttributes)
{
    return scan(text.constData(), text.constData() + text.size(), maximalAttributes);
}

} // namespace MODELKIT
