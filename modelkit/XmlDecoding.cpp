// SPDX-License-Identifier: MIT
#include "modelkit/XmlDecoding.h"

#include "modelkit/QtVersion.h"
#include "modelkit/Utf8.h"

#include <QtCore/QChar>
#include <QtCore/QStringView>
#include <QtCore/QtEndian>

#include <algorithm>
#include <iterator>

namespace MODELKIT {

namespace {

using QtVersion::Size;

bool isBlank(QChar character)
{
    return character == QLatin1Char(' ') || character == QLatin1Char('\t') || character == QLatin1Char('\r')
           || character == QLatin1Char('\n');
}

// Finds the encoding in the XML declaration. It is empty when there is none and when the declaration is
// malformed; the reader then reports what is wrong.
class Declaration
{
public:
    explicit Declaration(const QString& text) : m_text(text) {}

    QString encoding()
    {
        if (!skip("<?xml"))
            return QString();
        while (skipBlanks() && !skip("?>")) {
            const QString name = until(QLatin1Char('='));
            skipBlanks();
            const QChar quote = m_at < m_text.size() ? m_text.at(m_at) : QChar();
            if (quote != QLatin1Char('"') && quote != QLatin1Char('\''))
                return QString();
            ++m_at;
            const QString value = until(quote);
            if (name.trimmed() == QLatin1String("encoding"))
                return isName(value) ? value : QString();
        }
        return QString();
    }

private:
    static bool isName(const QString& value)
    {
        const auto isAscii = [](QChar c) { return c.unicode() < 0x80; };
        const auto isPart = [](QChar c) {
            return c.isLetterOrNumber() || c == QLatin1Char('.') || c == QLatin1Char('_')
                   || c == QLatin1Char('-');
        };
        return !value.isEmpty() && std::all_of(value.begin(), value.end(), isAscii) && value.at(0).isLetter()
               && std::all_of(value.begin(), value.end(), isPart);
    }

    bool skip(const char* what)
    {
        const QLatin1String wanted(what);
        if (!QStringView(m_text).mid(m_at).startsWith(wanted))
            return false;
        m_at += wanted.size();
        return true;
    }

    // True when there were any.
    bool skipBlanks()
    {
        const Size before = m_at;
        while (m_at < m_text.size() && isBlank(m_text.at(m_at)))
            ++m_at;
        return m_at != before;
    }

    // The text before the character; continues after the character.
    QString until(QChar end)
    {
        const Size begin = m_at;
        const Size found = m_text.indexOf(end, begin);
        m_at = found < 0 ? m_text.size() : found + 1;
        return found < 0 ? QString() : m_text.mid(begin, found - begin);
    }

    const QString& m_text;
    Size m_at = 0;
};

// The name without what its spellings differ in: case, and the signs between letters and digits.
QString plainName(const QString& encoding)
{
    QString plain;
    for (const QChar character : encoding)
        if (character.isLetterOrNumber())
            plain += character.toLower();
    return plain;
}

bool isNumbered(const QString& name, const char* family)
{
    const QLatin1String beginning(family);
    if (!name.startsWith(beginning) || name.size() == beginning.size())
        return false;
    return std::all_of(name.begin() + beginning.size(), name.end(), [](QChar c) { return c.isDigit(); });
}

// Stateless encodings that encode the characters of markup as ASCII does.
bool isAccepted(const QString& name)
{
    static const char* const families[] = {"iso8859", "latin", "windows125", "cp125"};
    static const char* const names[] = {
        "usascii", "ascii",  "utf8",       "koi8r",    "koi8u",      "ibm437",     "cp437",      "ibm850",
        "cp850",   "ibm852", "cp852",      "ibm855",   "cp855",      "ibm866",     "cp866",      "ibm775",
        "cp775",   "ibm819", "cp819",      "ibm857",   "cp857",      "ibm858",     "cp858",      "ibm862",
        "cp862",   "l1",     "tis620",     "eucjp",    "macintosh",  "windows874", "euckr",      "windows949",
        "cp949",   "sjis",   "xsjis",      "shiftjis", "windows31j", "windows932", "cp932",      "gb18030",
        "gbk",     "gb2312", "windows936", "cp936",    "big5",       "big5hkscs",  "windows950", "cp950"};
    const auto isIt = [&name](const char* known) { return name == QLatin1String(known); };
    const auto isOfIt = [&name](const char* family) { return isNumbered(name, family); };
    return std::any_of(std::begin(names), std::end(names), isIt)
           || std::any_of(std::begin(families), std::end(families), isOfIt);
}

// The size of a code unit in bytes, the byte order, and the size of the byte order mark.
struct Units
{
    int size = 1;
    bool isBigEndian = false;
    int mark = 0;
};

Units unitsOf(const QByteArray& bytes)
{
    if (bytes.startsWith(QByteArray("\0\0\xFE\xFF", 4)))
        return {4, true, 4};
    if (bytes.startsWith(QByteArray("\xFF\xFE\0\0", 4)))
        return {4, false, 4};
    if (bytes.startsWith("\xFE\xFF"))
        return {2, true, 2};
    if (bytes.startsWith("\xFF\xFE"))
        return {2, false, 2};
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return {1, false, 3};
    // A document contains no U+0000 and begins with ASCII characters.
    const auto isZero = [&bytes](int i) { return i < bytes.size() && bytes.at(i) == 0; };
    if (isZero(0) && isZero(1) && isZero(2))
        return {4, true, 0};
    if (isZero(1) && isZero(2) && isZero(3))
        return {4, false, 0};
    if (isZero(0))
        return {2, true, 0};
    if (isZero(1))
        return {2, false, 0};
    return {};
}

DecodedXml fromUtf16(const char* bytes, Size size, bool isBigEndian)
{
    DecodedXml decoded;
    decoded.text = QString(size / 2, Qt::Uninitialized);
    if (isBigEndian)
        qFromBigEndian<quint16>(bytes, size / 2, decoded.text.data());
    else
        qFromLittleEndian<quint16>(bytes, size / 2, decoded.text.data());
    decoded.isWhole = size % 2 == 0;
    decoded.endsInside = !decoded.isWhole;
    return decoded;
}

DecodedXml fromUtf32(const char* bytes, Size size, bool isBigEndian)
{
    DecodedXml decoded;
    decoded.text.reserve(size / 4);
    for (const char* const end = bytes + (size - size % 4); bytes != end; bytes += 4) {
        const auto code = isBigEndian ? qFromBigEndian<quint32>(bytes) : qFromLittleEndian<quint32>(bytes);
        if (code > QChar::LastValidCodePoint || QChar::isSurrogate(code)) {
            decoded.isWhole = false;
            return decoded;
        }
        if (QChar::requiresSurrogates(code))
            decoded.text += QChar(QChar::highSurrogate(code));
        decoded.text +=
            QChar(QChar::requiresSurrogates(code) ? QChar::lowSurrogate(code) : static_cast<ushort>(code));
    }
    decoded.isWhole = size % 4 == 0;
    decoded.endsInside = !decoded.isWhole;
    return decoded;
}

// Whether the bytes are the beginning of a character.
bool isBeginning(const char* bytes, Size size)
{
    const auto first = static_cast<unsigned char>(bytes[0]);
    const int needed = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    return first >= 0xC2 && first <= 0xF4 && size < needed
           && std::all_of(bytes + 1, bytes + size, [](char c) { return (c & 0xC0) == 0x80; });
}

DecodedXml fromUtf8(const char* bytes, Size size)
{
    DecodedXml decoded;
    const auto good = static_cast<Size>(wellFormedUtf8(bytes, size));
    decoded.text = textOfUtf8(bytes, good);
    decoded.isWhole = good == size;
    decoded.endsInside = !decoded.isWhole && isBeginning(bytes + good, size - good);
    return decoded;
}

DecodedXml fromAscii(const QByteArray& bytes)
{
    const auto end =
        std::find_if(bytes.begin(), bytes.end(), [](char c) { return static_cast<signed char>(c) < 0; });
    DecodedXml decoded = fromUtf8(bytes.constData(), static_cast<Size>(end - bytes.begin()));
    decoded.isWhole = end == bytes.end();
    return decoded;
}

// Qt replaces malformed bytes of these encodings by one of two characters. U+001A is not allowed in XML
// anyway, and of these encodings only GB18030 can encode U+FFFD.
bool isReplacement(QChar character)
{
    constexpr char substitute = 0x1A;
    return character == QChar(QChar::ReplacementCharacter) || character == QLatin1Char(substitute);
}

DecodedXml fromCodec(const QByteArray& bytes, const QString& encoding)
{
    DecodedXml decoded;
    // Qt silently drops a character that is cut off at the end, unless another one follows.
    decoded.text = QtVersion::decode(encoding.toLatin1(), bytes + '\n');
    decoded.text.chop(1);
    const auto malformed = std::find_if(decoded.text.cbegin(), decoded.text.cend(), isReplacement);
    decoded.isWhole = malformed == decoded.text.cend();
    decoded.endsInside = !decoded.isWhole && malformed + 1 == decoded.text.cend();
    decoded.text.truncate(static_cast<Size>(malformed - decoded.text.cbegin()));
    return decoded;
}

DecodedXml refuse(const QString& encoding)
{
    DecodedXml decoded;
    decoded.refusedEncoding = encoding;
    return decoded;
}

// The text ends in front of a lone surrogate.
void endAtLoneSurrogate(DecodedXml& decoded)
{
    const qint64 position = loneSurrogate(decoded.text);
    if (position < 0)
        return;
    decoded.endsInside =
        position + 1 == decoded.text.size() && decoded.text.at(static_cast<Size>(position)).isHighSurrogate();
    decoded.text.truncate(static_cast<Size>(position));
    decoded.isWhole = false;
}

// Checks every text: the declared encoding must be known, and all characters must be complete.
DecodedXml examined(DecodedXml decoded)
{
    const QString declared = Declaration(decoded.text).encoding();
    if (!declared.isEmpty() && !QtVersion::knowsEncoding(declared.toLatin1()))
        return refuse(declared);
    // The reader would silently ignore a second byte order mark.
    if (decoded.text.startsWith(QChar(QChar::ByteOrderMark))) {
        decoded.text.clear();
        decoded.isWhole = false;
        decoded.endsInside = false;
    }
    endAtLoneSurrogate(decoded);
    return decoded;
}

DecodedXml fromBytesOfAscii(const QByteArray& bytes)
{
    const auto end = bytes.startsWith("<?xml") ? bytes.indexOf("?>") : -1;
    const QString declared =
        end < 0 ? QString() : Declaration(QString::fromLatin1(bytes.constData(), end + 2)).encoding();
    const QString name = plainName(declared);
    if (name.isEmpty() || name == QLatin1String("utf8"))
        return fromUtf8(bytes.constData(), bytes.size());
    if (!isAccepted(name) || !QtVersion::knowsEncoding(declared.toLatin1()))
        return refuse(declared);
    return name.endsWith(QLatin1String("ascii")) ? fromAscii(bytes) : fromCodec(bytes, declared);
}

} // namespace

DecodedXml decodeXml(const QByteArray& bytes)
{
    const Units units = unitsOf(bytes);
    const char* const begin = bytes.constData() + units.mark;
    const Size size = bytes.size() - units.mark;
    if (units.size == 4)
        return examined(fromUtf32(begin, size, units.isBigEndian));
    if (units.size == 2)
        return examined(fromUtf16(begin, size, units.isBigEndian));
    if (units.mark > 0)
        return examined(fromUtf8(begin, size));
    return examined(fromBytesOfAscii(bytes));
}

DecodedXml decodeXml(const QString& string)
{
    DecodedXml decoded;
    decoded.text = string.startsWith(QChar(QChar::ByteOrderMark)) ? string.mid(1) : string;
    return examined(decoded);
}

} // namespace MODELKIT
