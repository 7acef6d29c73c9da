// SPDX-License-Identifier: MIT
// Random XML documents: most of them as records nest, many of them odd or damaged.
#pragma once

#include "Random.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <iterator>
#include <string_view>

namespace testing_support {

inline int numberFrom(const char* variable, int otherwise)
{
    const QByteArray value = qgetenv(variable);
    return value.isEmpty() ? otherwise : value.toInt();
}

// Whoever starts a test can choose other documents, and more of them.
inline unsigned int chosenSeed() { return static_cast<unsigned int>(numberFrom("PLAIN_XML_SEED", 1)); }
inline int chosenRounds() { return numberFrom("PLAIN_XML_ROUNDS", 20000); }

namespace random_xml {

// The document first, and every class before those that it owns.
inline const char* const recordNames[] = {"PelLu300RouterInterfaceXml",
                                          "PelLu300RouterMessage",
                                          "Fragment",
                                          "MastershipState",
                                          "AcquireMastership",
                                          "ReleaseMastership",
                                          "OstraInterfacePort",
                                          "PelVtConnectServer",
                                          "RouterVtServerPort",
                                          "DF_Params"};
constexpr int recordCount = std::size(recordNames);
constexpr int message = 1;
constexpr int fragment = 2;

inline const char* const valueNames[] = {
    "Type",    "MessageID", "State",     "MasterClientID",        "Success",     "Port",
    "Address", "Frequency", "Bandwidth", "DemodulationFrequency", "PanoramaSpan"};
inline const char* const strangeNames[] = {
    "x", "_x-1.2", "Typ", "fragment", "Fragment2", "a:Port", "Port\xC3\xA9", "\xC3\x89t", "\xF0\x90\x80\x80"};

inline const char* const values[] = {"",
                                     "0",
                                     "1",
                                     "7",
                                     "-1",
                                     "4294967296",
                                     "2147483647",
                                     "-2147483648",
                                     "0000000012",
                                     "true",
                                     "false",
                                     "TRUE",
                                     "Request",
                                     "Reply",
                                     "Event",
                                     "Replay",
                                     "MasterPresent",
                                     "RouterIsMaster",
                                     "98.5",
                                     "1e3",
                                     "98.437",
                                     "nan",
                                     "-inf",
                                     "-0",
                                     "12345678901234567890",
                                     " 7 ",
                                     "\t7\n",
                                     "\xD9\xA3",
                                     "a long text that does not fit into a word"};
// What texts are put together from.
inline const char* const pieces[] = {"a",
                                     "7",
                                     " ",
                                     "\t",
                                     "\n",
                                     "\r",
                                     "\r\n",
                                     "]",
                                     "]]",
                                     "&amp;",
                                     "&lt;",
                                     "&gt;",
                                     "&quot;",
                                     "&apos;",
                                     "&#13;",
                                     "'",
                                     "\"",
                                     "\x7F",
                                     "\xC2\x80",
                                     "\xC2\x85",
                                     "\xC3\xA9",
                                     "\xE2\x80\xA8",
                                     "\xE2\x82\xAC",
                                     "\xEF\xB7\x90",
                                     "\xEF\xBB\xBF",
                                     "\xEF\xBF\xBD",
                                     "\xF0\x9F\x98\x80",
                                     "\xF0\x9F\xBF\xBE"};

// What only a few documents hold, or none that is well-formed.
inline constexpr std::string_view oddPieces[] = {
    "<", ">", "&", ";", "=", "'", "\"", "/>", "</", "]]>", "\r", "\n", " ",
    // references
    "&#13;", "&#xD;", "&#10;", "&#32;", "&#60;", "&#x41;", "&#x20AC;", "&#x1F600;", "&#0;", "&#1;",
    "&#xD800;", "&#xFFFE;", "&#xFFFF;", "&#x110000;", "&#99999999999;", "&unknown;", "&amp", "&LT;", "&;",
    // markup that is no element
    "<!-- -->", "<!-- <Port>9</Port> -->", "<!-- -- -->", "<![CDATA[x]]>", "<![CDATA[]]>",
    "<![CDATA[ \r\n]]>", "<![CDATA[<Port>9</Port>]]>", "<![CDATA[", "<?pi x?>", "<?pi",
    "<?xml version=\"1.0\"?>", "<!DOCTYPE x>", "<!DOCTYPE x [<!ENTITY unknown \"y\">]>", "<!ELEMENT x ANY>",
    // elements
    "</Fragment>", "<Fragment>", "<Fragment/>", "<a:b>", "<a:b/>", "<Type>Reply</Type>", "<x><x></x></x>",
    "<x><x/></x>", "<Port a='1'>8</Port>", "<Port >8</Port >", "<Port\r\n/>", "< Port>8</Port>", "<1/>",
    "<-a/>", "<.a/>", "<_/>", "</>", "<>", "<\xC3\xA9/>", "<a\xCC\x81/>", "<a\xC3\x97/>",
    // characters and bytes that must not occur, or only in some places
    std::string_view("\0", 1), "\x01", "\x08", "\x0B", "\x0C", "\x1F", "\x80", "\xC3", "\xFF", "\xC0\x80",
    "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xEF\xBF\xBE", "\xEF\xBF\xBF",
    "\xEF\xBB\xBF", "\xEF\xBB", "\xC2\xA0", "\xC2\x85"};

inline const char* const attributes[] = {" ",
                                         " a=\"b\"",
                                         " a='b'",
                                         " a=\"1\" a=\"2\"",
                                         " a=\"<\"",
                                         " a=b",
                                         " a",
                                         " xmlns=\"urn:x\"",
                                         "\n",
                                         " a:b=\"1\"",
                                         " a='&amp;'",
                                         " xmlns:a=\"urn:x\" a:b=\"1\"",
                                         "\t\r\n",
                                         " a=\"&#13;\r\n\"",
                                         " \xC3\xA9=\"\""};

// The first ones are usual.
inline const char* const declarations[] = {"",
                                           "<?xml version=\"1.0\"?>",
                                           "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
                                           "<?xml version=\"1.0\" encoding=\"utf-8\"?>",
                                           "\xEF\xBB\xBF<?xml version=\"1.0\"?>",
                                           "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
                                           "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>",
                                           "\xEF\xBB\xBF\xEF\xBB\xBF",
                                           "\xEF\xBB\xBF",
                                           " <?xml version=\"1.0\"?>",
                                           "<?xml version='1.0'?>",
                                           "<?xml version=\"1.0\" ?>",
                                           "<?xml version=\"1.1\"?>",
                                           "<?xml version=\"2.0\"?>",
                                           "<?xml encoding=\"UTF-8\"?>",
                                           "<?XML version=\"1.0\"?>",
                                           "<?xml version=\"1.0\" standalone=\"yes\"?>",
                                           "<?xml version=\"1.0\" standalone=\"maybe\"?>",
                                           "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>",
                                           "<?xml version=\"1.0\" encoding=\"US-ASCII\"?>",
                                           "<?xml version=\"1.0\" encoding=\"UTF-16\"?>",
                                           "<?xml version=\"1.0\" encoding=\"nonsense\"?>",
                                           "<?xml version=\"1.0\"?><!DOCTYPE x>",
                                           "<!-- first -->",
                                           "<?pi?>"};
constexpr int usualDeclarations = 4;
constexpr int declarationCount = std::size(declarations);

inline const char* const breaks[] = {"", " ", "\n", "\r\n", "\r", "\n\n  ", "\t\n"};

inline QByteArray bytesOf(std::string_view text) { return {text.data(), static_cast<int>(text.size())}; }

} // namespace random_xml

class RandomXml
{
public:
    explicit RandomXml(Random& random) : m_random(random) {}

    // Root: the name that the root element mostly has.
    QByteArray make(const QByteArray& root)
    {
        using namespace random_xml;
        m_isIndented = m_random.oneIn(2);
        QByteArray document =
            declarations[m_random.below(m_random.oneIn(6) ? declarationCount : usualDeclarations)];
        document += m_isIndented ? "\n" : m_random.oneIn(4) ? m_random.of(breaks) : "";
        int which = 0;
        while (which < recordCount && root != recordNames[which])
            ++which;
        record(document, m_random.oneIn(20) ? m_random.below(recordCount) : which, 0);
        document += m_random.of(breaks);
        if (m_random.oneIn(12))
            document.replace("\n", m_random.oneIn(2) ? "\r\n" : "\r");
        if (m_random.oneIn(2))
            while (m_random.oneIn(2))
                damage(document);
        return m_random.oneIn(25) ? encoded(document) : document;
    }

private:
    void record(QByteArray& document, int which, int depth)
    {
        element(document, random_xml::recordNames[which], depth, [&] {
            const int children = m_random.below(5);
            for (int i = 0; i < children; ++i)
                child(document, which, depth + 1);
            return children > 0;
        });
    }

    void child(QByteArray& document, int which, int depth)
    {
        using namespace random_xml;
        if (depth < 6 && m_random.oneIn(12))
            record(document, m_random.below(recordCount), depth);
        else if (which < fragment && m_random.oneIn(2))
            record(document, which + 1, depth);
        else if (which == fragment && !m_random.oneIn(6))
            record(document, fragment + 1 + m_random.below(recordCount - fragment - 1), depth);
        else
            value(document, depth);
    }

    void value(QByteArray& document, int depth)
    {
        using namespace random_xml;
        const QByteArray name = m_random.oneIn(8) ? m_random.of(strangeNames) : m_random.of(valueNames);
        if (m_isIndented)
            indent(document, depth);
        else if (m_random.oneIn(8))
            document += m_random.of(breaks);
        document += '<' + name + '>' + text();
        if (m_random.oneIn(20)) {
            const QByteArray inner = m_random.oneIn(2) ? name : QByteArray(m_random.of(valueNames));
            document += '<' + inner + (m_random.oneIn(2) ? QByteArray("/>") : ">7</" + inner + '>') + text();
        }
        document += "</" + name + '>';
    }

    QByteArray text()
    {
        using namespace random_xml;
        if (m_random.oneIn(2))
            return m_random.of(values);
        QByteArray result;
        for (int size = m_random.below(7); size > 0; --size)
            result += m_random.of(pieces);
        return result;
    }

    template <class Content>
    void element(QByteArray& document, const char* name, int depth, const Content& content)
    {
        if (m_isIndented)
            indent(document, depth);
        const auto begin = document.size();
        document += QByteArray("<") + name + '>';
        if (!content() && m_random.oneIn(2)) {
            document.truncate(begin);
            document += QByteArray("<") + name + "/>";
            return;
        }
        if (m_isIndented)
            indent(document, depth);
        document += QByteArray("</") + name + '>';
    }

    static void indent(QByteArray& document, int depth) { document += '\n' + QByteArray(depth * 2, ' '); }

    // A place in the document, often one next to markup.
    int place(const QByteArray& document, char before)
    {
        const int at = m_random.below(static_cast<int>(document.size()) + 1);
        const int found = static_cast<int>(document.indexOf(before, at));
        return found < 0 || m_random.oneIn(2) ? at : found;
    }

    void damage(QByteArray& document)
    {
        using namespace random_xml;
        switch (m_random.below(10)) {
        case 0:
            document.truncate(place(document, '<'));
            break;
        case 1:
            document.remove(place(document, '>'), 1 + m_random.below(4));
            break;
        case 2:
            // In a tag.
            if (const auto end = document.indexOf('>', m_random.below(static_cast<int>(document.size()) + 1));
                end > 0)
                document.insert(end, m_random.of(attributes));
            break;
        case 3: {
            // A part of the document comes again.
            const int at = place(document, '<');
            const QByteArray part = document.mid(at, place(document, '<') - at);
            document.insert(m_random.oneIn(2) ? at : place(document, '<'), part);
            break;
        }
        case 4:
            // Behind the root element, or in front of it.
            if (m_random.oneIn(4))
                document.prepend(bytesOf(m_random.of(oddPieces)));
            else
                document += bytesOf(m_random.oneIn(3) ? std::string_view(m_random.of(breaks))
                                                      : m_random.of(oddPieces));
            break;
        case 5: {
            const QByteArray name = m_random.oneIn(2) ? "x" : m_random.of(recordNames);
            const int depth = 1 + m_random.below(m_random.oneIn(4) ? 80 : 4);
            document.insert(place(document, '<'), ('<' + name + '>').repeated(depth) + text()
                                                      + ("</" + name + '>').repeated(depth));
            break;
        }
        default:
            document.insert(place(document, m_random.oneIn(2) ? '<' : '>'), bytesOf(m_random.of(oddPieces)));
        }
    }

    // In another encoding, with or without a byte order mark, sometimes cut off inside a character.
    QByteArray encoded(const QByteArray& document)
    {
        const QString text = (m_random.oneIn(2) ? QString(QChar(QChar::ByteOrderMark)) : QString())
                             + QString::fromUtf8(document);
        const int size = m_random.oneIn(2) ? 2 : 4;
        const bool isBigEndian = m_random.oneIn(2);
        QByteArray result;
        const auto append = [&](unsigned int code) {
            for (int i = 0; i < size; ++i) {
                const int shift = 8 * (isBigEndian ? size - 1 - i : i);
                result += static_cast<char>(code >> shift & 0xFF);
            }
        };
        if (size == 2)
            for (const QChar unit : text)
                append(unit.unicode());
        else
            for (const unsigned int code : text.toUcs4())
                append(code);
        if (m_random.oneIn(4))
            result.chop(1 + m_random.below(3));
        return result;
    }

    Random& m_random;
    bool m_isIndented = false;
};

} // namespace testing_support
