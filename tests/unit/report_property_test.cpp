// SPDX-License-Identifier: MIT
// The promise of a reading report: if reading succeeds without an entry, nothing was lost.
//
// The tests read thousands of random documents with valid and odd values, with unknown and repeated members,
// and with random damage. If one is read without an entry, the record must write the same information, and
// reading that must give an equal record. The functions that extract the information of a document are
// independent of the library; they know only the table of members below.

#include "BinarySupport.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QtEndian>

#include <cmath>
#include <functional>
#include <random>
#include <set>

using namespace binary_support;
using MODELKIT::IMKObject;
using MODELKIT::ReadingReport;

namespace {

// --- the dialect ----------------------------------------------------------------------------------

enum class Form
{
    Unsigned,
    Double,
    Boolean,
    Text,
    Type,
    State,
    Record,
    List
};

struct Member
{
    const char* name;
    Form form;
    std::uint32_t tag;
};

struct Class
{
    const char* name;
    std::uint32_t id;
    QVector<Member> members;
    std::function<std::unique_ptr<IMKObject>()> create;
    std::function<bool(const IMKObject&, const IMKObject&)> equal;
};

template <class R>
Class classOf(const char* name, std::uint32_t id, const QVector<Member>& members)
{
    return {name, id, members, [] { return std::make_unique<R>(); },
            [](const IMKObject& a, const IMKObject& b) {
                return static_cast<const R&>(a) == static_cast<const R&>(b);
            }};
}

// The first classes are made more often than the others.
const QVector<Class>& classes()
{
    static const QVector<Class> all = {
        classOf<PelLu300RouterInterfaceXml>("PelLu300RouterInterfaceXml", 0x8553499A,
                                            {{"PelLu300RouterMessage", Form::Record, messageTag}}),
        classOf<PelLu300RouterMessage>("PelLu300RouterMessage", 0xEAC09D5A,
                                       {{"Type", Form::Type, typeTag},
                                        {"MessageID", Form::Unsigned, messageIdTag},
                                        {"Fragment", Form::List, fragmentTag}}),
        classOf<Fragment>("Fragment", 0xD2408D54,
                          {{"MastershipState", Form::Record, mastershipStateTag},
                           {"AcquireMastership", Form::Record, acquireMastershipTag},
                           {"ReleaseMastership", Form::Record, releaseMastershipTag},
                           {"OstraInterfacePort", Form::Record, ostraInterfacePortTag},
                           {"PelVtConnectServer", Form::Record, pelVtConnectServerTag},
                           {"RouterVtServerPort", Form::Record, routerVtServerPortTag},
                           {"DF_Params", Form::Record, dfParamsTag}}),
        classOf<MastershipState>(
            "MastershipState", 0xD6FF526C,
            {{"State", Form::State, stateTag}, {"MasterClientID", Form::Text, masterClientIdTag}}),
        classOf<AcquireMastership>("AcquireMastership", 0x1A837ACA, {{"Success", Form::Boolean, successTag}}),
        classOf<ReleaseMastership>("ReleaseMastership", 0x5F3980D4, {{"Success", Form::Boolean, successTag}}),
        classOf<OstraInterfacePort>("OstraInterfacePort", 0x7F012EB8, {{"Port", Form::Unsigned, portTag}}),
        classOf<PelVtConnectServer>("PelVtConnectServer", 0x0864034C,
                                    {{"Address", Form::Text, addressTag}, {"Port", Form::Unsigned, portTag}}),
        classOf<RouterVtServerPort>("RouterVtServerPort", 0x24C7A508, {{"Port", Form::Unsigned, portTag}}),
        classOf<DF_Params>("DF_Params", 0xF1EE139C,
                           {{"Frequency", Form::Double, frequencyTag},
                            {"DemodulationFrequency", Form::Double, demodulationFrequencyTag},
                            {"Bandwidth", Form::Double, bandwidthTag},
                            {"PanoramaSpan", Form::Double, panoramaSpanTag}})};
    return all;
}

const Class& classNamed(const QString& name)
{
    for (const Class& candidate : classes())
        if (name == QLatin1String(candidate.name))
            return candidate;
    ADD_FAILURE() << name.toStdString();
    return classes().first();
}

// A member without a name means that there is none.
Member memberNamed(const Class& of, const QString& name)
{
    for (const Member& member : of.members)
        if (name == QLatin1String(member.name))
            return member;
    return {nullptr, Form::Text, 0};
}

Member memberTagged(const Class& of, std::uint32_t tag)
{
    for (const Member& member : of.members)
        if (member.tag == tag)
            return member;
    return {nullptr, Form::Text, 0};
}

// --- the information of a document ----------------------------------------------------------------

// The value of a number, whatever its spelling. Other texts are returned unchanged.
QString canonicalNumber(const QString& text, bool isWhole)
{
    static const QRegularExpression pattern(
        QStringLiteral("^\\s*([+-]?)([0-9]*)(?:\\.([0-9]*))?(?:[eE]([+-]?[0-9]{1,6}))?\\s*$"));
    const auto match = pattern.match(text);
    const QString fraction = match.captured(3);
    QString digits = match.captured(2) + fraction;
    if (!match.hasMatch() || digits.isEmpty()
        || (isWhole && text.contains(QRegularExpression(QStringLiteral("[.eE]")))))
        return QStringLiteral("none: ") + text;
    qint64 power = match.captured(4).toInt() - fraction.size();
    while (digits.startsWith(QLatin1Char('0')))
        digits.remove(0, 1);
    while (digits.endsWith(QLatin1Char('0'))) {
        digits.chop(1);
        ++power;
    }
    if (digits.isEmpty())
        return QStringLiteral("0");
    return QStringLiteral("%1%2 * 10^%3")
        .arg(match.captured(1) == QLatin1String("-") ? QStringLiteral("-") : QString(), digits)
        .arg(power);
}

QString canonicalValue(Form form, const QString& text)
{
    const QString lower = text.toLower();
    switch (form) {
    case Form::Unsigned:
        return canonicalNumber(text, true);
    case Form::Double:
        return canonicalNumber(text, false);
    case Form::Boolean:
        return lower == QLatin1String("1")   ? QStringLiteral("true")
               : lower == QLatin1String("0") ? QStringLiteral("false")
                                             : lower;
    default:
        return text;
    }
}

// The information in a document, one piece in a line. Only the order of items matters.
using Information = QStringList;

class XmlInformation
{
public:
    static Information of(const QString& xml)
    {
        QXmlStreamReader reader(xml);
        reader.setNamespaceProcessing(false);
        XmlInformation information(reader);
        if (reader.readNextStartElement())
            information.element(reader.qualifiedName().toString(), reader.name().toString());
        std::sort(information.m_lines.begin(), information.m_lines.end());
        return information.m_lines;
    }

private:
    explicit XmlInformation(QXmlStreamReader& reader) : m_reader(reader) {}

    void say(const QString& path, const QString& what) { m_lines << path + QLatin1Char(' ') + what; }

    void attributes(const QString& path)
    {
        for (const QXmlStreamAttribute& attribute : m_reader.attributes())
            say(path, QStringLiteral("has the attribute ") + attribute.qualifiedName().toString());
    }

    void element(const QString& path, const QString& className)
    {
        const Class& own = classNamed(className);
        say(path, QStringLiteral("is there"));
        attributes(path);
        int items = 0;
        while (!m_reader.atEnd() && m_reader.readNext() != QXmlStreamReader::EndElement) {
            static const QRegularExpression notBlank(QStringLiteral("[^ \\t\\r\\n]"));
            if (m_reader.isCharacters() && m_reader.text().toString().contains(notBlank))
                say(path, QStringLiteral("holds the text ") + m_reader.text().toString());
            if (!m_reader.isStartElement())
                continue;
            const Member member = memberNamed(own, m_reader.name().toString());
            QString step = path + QLatin1Char('/') + m_reader.qualifiedName().toString();
            if (!member.name) {
                say(step, QStringLiteral("is not known"));
                m_reader.skipCurrentElement();
            } else if (member.form == Form::Record) {
                element(step, m_reader.name().toString());
            } else if (member.form == Form::List) {
                element(step + QString::number(++items), m_reader.name().toString());
            } else {
                scalar(step, member.form);
            }
        }
    }

    void scalar(const QString& path, Form form)
    {
        attributes(path);
        QString text;
        while (!m_reader.atEnd() && m_reader.readNext() != QXmlStreamReader::EndElement) {
            if (m_reader.isCharacters())
                text += m_reader.text();
            if (m_reader.isStartElement()) {
                say(path, QStringLiteral("holds an element"));
                m_reader.skipCurrentElement();
            }
        }
        say(path, QStringLiteral("is ") + canonicalValue(form, text));
    }

    QXmlStreamReader& m_reader;
    Information m_lines;
};

class BinaryInformation
{
public:
    // Form: id, length, content.
    static Information of(const QByteArray& form, const Class& root)
    {
        BinaryInformation information;
        information.say(QString(), QStringLiteral("begins ") + QString::fromLatin1(form.left(4).toHex()));
        information.record(QLatin1String(root.name), root, form.mid(8));
        std::sort(information.m_lines.begin(), information.m_lines.end());
        return information.m_lines;
    }

private:
    void say(const QString& path, const QString& what) { m_lines << path + QLatin1Char(' ') + what; }

    static qint32 wordAt(const QByteArray& bytes, int at)
    {
        return qFromBigEndian<qint32>(bytes.constData() + at);
    }

    static QString hex(const QByteArray& bytes)
    {
        return QStringLiteral("bytes ") + QString::fromLatin1(bytes.toHex());
    }

    void record(const QString& path, const Class& own, const QByteArray& content)
    {
        say(path, QStringLiteral("is there"));
        int at = 0;
        while (at + 8 <= content.size()) {
            const auto tag = static_cast<std::uint32_t>(wordAt(content, at));
            const qint64 length = wordAt(content, at + 4);
            at += 8;
            const Member member = memberTagged(own, tag);
            if (!member.name || length < 0 || length > content.size() - at) {
                say(path, QStringLiteral("holds ") + hex(content.mid(at - 8)));
                return;
            }
            const QByteArray payload = content.mid(at, static_cast<int>(length));
            at += static_cast<int>(length);
            const QString step = path + QLatin1Char('/') + QLatin1String(member.name);
            if (member.form == Form::Record)
                record(step, classNamed(QLatin1String(member.name)), payload);
            else if (member.form == Form::List)
                list(step, payload);
            else
                say(step, QStringLiteral("is ") + value(member.form, payload));
        }
        if (at != content.size())
            say(path, QStringLiteral("ends in ") + hex(content.mid(at)));
    }

    void list(const QString& path, const QByteArray& payload)
    {
        const int count = payload.size() < 4 ? -1 : wordAt(payload, 0);
        int at = 4;
        for (int i = 0; i < count; ++i) {
            const qint64 length = payload.size() - at < 4 ? -1 : wordAt(payload, at);
            at += 4;
            if (length < 0 || length > payload.size() - at) {
                say(path, QStringLiteral("is broken"));
                return;
            }
            record(path + QString::number(++m_items), classNamed(QStringLiteral("Fragment")),
                   payload.mid(at, static_cast<int>(length)));
            at += static_cast<int>(length);
        }
        if (at != payload.size() || count < 0)
            say(path, QStringLiteral("is broken"));
    }

    static QString value(Form form, const QByteArray& payload)
    {
        if (form == Form::Boolean)
            return hex(payload);
        if (form == Form::Unsigned)
            return payload.size() == 8 ? hex(payload) : QStringLiteral("broken");
        if (payload.size() < 4)
            return QStringLiteral("broken");
        const bool isNull = wordAt(payload, 0) == -1;
        if (wordAt(payload, 0) != (isNull ? -1 : payload.size() - 4))
            return QStringLiteral("broken");
        const QByteArray utf8 = payload.mid(4);
        if (form == Form::Text)
            return isNull ? QStringLiteral("null") : hex(utf8);
        return form == Form::Double ? canonicalNumber(QString::fromUtf8(utf8), false) : hex(utf8);
    }

    Information m_lines;
    int m_items = 0;
};

// --- documents at random --------------------------------------------------------------------------

class Random
{
public:
    explicit Random(unsigned int seed) : m_engine(seed) {}

    // A number from 0 to end - 1.
    int below(int end) { return static_cast<int>(m_engine() % static_cast<unsigned int>(end)); }
    bool oneIn(int of) { return below(of) == 0; }
    quint64 bits() { return (quint64(m_engine()) << 32) | m_engine(); }

    template <class T>
    T from(const QVector<T>& choices)
    {
        return choices.at(below(static_cast<int>(choices.size())));
    }

    template <class T>
    void shuffle(QVector<T>& items)
    {
        for (int i = static_cast<int>(items.size()) - 1; i > 0; --i)
            std::swap(items[i], items[below(i + 1)]);
    }

private:
    std::mt19937 m_engine;
};

// The common part for both forms. Lossy: one in so many values is one that reading does not keep.
class Maker
{
protected:
    Maker(Random& random, int lossy) : m_random(random), m_lossy(lossy) {}

    bool losesSomething() { return m_lossy > 0 && m_random.oneIn(m_lossy); }

    QString decimal()
    {
        if (losesSomething())
            return m_random.from<QString>(
                {QStringLiteral("nan"), QStringLiteral("inf"), QStringLiteral("-inf"),
                 QStringLiteral("1.234"), QStringLiteral("-0.001"), QStringLiteral("1e-5"),
                 QStringLiteral("98.50000000000000000001"), QStringLiteral("12345678901234567890.00"),
                 QStringLiteral("70368744177664.01"), QStringLiteral("1e400"), QStringLiteral("x"), QString(),
                 QStringLiteral("1 MHz"), QStringLiteral("1,5"), QStringLiteral("0.015"),
                 QStringLiteral("123456789012345678901")});
        switch (m_random.below(4)) {
        case 0:
            return m_random.from<QString>(
                {QStringLiteral("007"), QStringLiteral("1e3"), QStringLiteral("-0"), QStringLiteral("-0.00"),
                 QStringLiteral("+2.5"), QStringLiteral(" 7\n"), QStringLiteral("12.5e1"),
                 QStringLiteral("1.5000000"), QStringLiteral(".5"), QStringLiteral("5."),
                 QStringLiteral("0e99"), QStringLiteral("1E+20"), QStringLiteral("1e300").left(3)});
        case 1:
            return QString::number(
                std::ldexp(static_cast<double>(m_random.bits() >> 40), m_random.below(200)), 'f', 2);
        case 2:
            return QString::number(static_cast<double>(m_random.bits() >> 44) / 64.0 - 1000, 'f', 2);
        default:
            return QString::number(m_random.below(2000) - 1000);
        }
    }

    QString enumerator(Form form)
    {
        if (losesSomething())
            return m_random.from<QString>({QStringLiteral("request"), QStringLiteral("Pause"),
                                           QStringLiteral(" Reply"), QStringLiteral("0"),
                                           QStringLiteral("\u00e4")});
        if (m_random.oneIn(20))
            return empty();
        return form == Form::Type ? m_random.from<QString>(
                   {QStringLiteral("Request"), QStringLiteral("Reply"), QStringLiteral("Event")})
                                  : m_random.from<QString>({QStringLiteral("NoMasterPresent"),
                                                            QStringLiteral("MasterPresent"),
                                                            QStringLiteral("RouterIsMaster")});
    }

    QString text()
    {
        QString result = empty();
        for (int left = m_random.below(8); left > 0; --left)
            result += m_random.from<QString>(
                {QStringLiteral("a"), QStringLiteral("Z"), QStringLiteral("0"), QStringLiteral(" "),
                 QStringLiteral("\t"), QStringLiteral("\n"), QStringLiteral("\r"), QStringLiteral("<"),
                 QStringLiteral(">"), QStringLiteral("&"), QStringLiteral("\""), QStringLiteral("]]>"),
                 QStringLiteral("\u00e4"), QStringLiteral("\u65e5"), QString(QChar(0xFFFD)),
                 QString(QChar(0xFEFF)), QString::fromUtf8("\xF0\x9F\x93\xA1")});
        return result;
    }

    // The members that a record will have, in order of their appearance.
    QVector<Member> membersOf(const Class& own)
    {
        QVector<Member> chosen;
        if (QLatin1String(own.name) == QLatin1String("Fragment")) {
            if (!losesSomething())
                chosen << m_random.from(own.members);
            if (losesSomething())
                chosen << m_random.from(own.members);
            return chosen;
        }
        for (const Member& member : own.members) {
            const bool isNeeded = member.form == Form::Type;
            if (isNeeded ? !losesSomething() : !m_random.oneIn(4))
                chosen << member;
            if (member.form == Form::List)
                while (!m_random.oneIn(3))
                    chosen << member;
            else if (losesSomething())
                chosen << member;
        }
        if (m_random.oneIn(2))
            m_random.shuffle(chosen);
        return chosen;
    }

    Random& m_random;
    int m_lossy;
};

class XmlMaker : Maker
{
public:
    XmlMaker(Random& random, int lossy) : Maker(random, lossy) {}

    QString document(const Class& root)
    {
        const QString prolog =
            m_random.oneIn(4) ? QStringLiteral("<?xml version='1.0'?>\n<!-- c -->") : QString();
        return prolog + record(root);
    }

private:
    QString record(const Class& own)
    {
        QString content;
        for (const Member& member : membersOf(own)) {
            content += between();
            content += member.form == Form::Record || member.form == Form::List
                           ? record(classNamed(QLatin1String(member.name)))
                           : element(QLatin1String(member.name), scalar(member.form));
        }
        return element(QLatin1String(own.name), content + between());
    }

    QString element(const QString& name, const QString& content)
    {
        QString qualified = name;
        QString attributes;
        if (losesSomething())
            qualified.prepend(m_random.from<QString>({QStringLiteral("p:"), QStringLiteral("Type:")}));
        if (losesSomething())
            attributes =
                m_random.from<QString>({QStringLiteral(" a='1'"), QStringLiteral(" xml:space=\"preserve\""),
                                        QStringLiteral(" xmlns:p='u' p:b=''")});
        if (m_random.oneIn(10))
            attributes += QLatin1Char('\n');
        if (content.isEmpty() && m_random.oneIn(2))
            return QLatin1Char('<') + qualified + attributes + QStringLiteral("/>");
        return QStringLiteral("<%1%2>%3</%1>").arg(qualified, attributes, content);
    }

    // The text between elements.
    QString between()
    {
        QString result;
        if (m_random.oneIn(2))
            result += QStringLiteral("\n  ");
        if (m_random.oneIn(10))
            result += m_random.from<QString>({QStringLiteral("<!-- <Type> -->"), QStringLiteral("<?p Type?>"),
                                              QStringLiteral("<![CDATA[ ]]>"), QStringLiteral("&#32;")});
        if (losesSomething())
            result += m_random.from<QString>(
                {QStringLiteral("text"), QStringLiteral("&amp;"), QStringLiteral("<![CDATA[<Type>]]>"),
                 QStringLiteral("<Unknown/>"), QStringLiteral("<Unknown>1<Type>Reply</Type></Unknown>"),
                 QStringLiteral("<x><x><Port>5</Port></x></x>"), QStringLiteral("<type>Reply</type>"),
                 QStringLiteral("<Success>true</Success>"), QStringLiteral("\u00a0")});
        return result;
    }

    QString scalar(Form form)
    {
        QString content = spelled(value(form));
        if (losesSomething())
            content.insert(m_random.oneIn(2) ? 0 : content.size(),
                           m_random.from<QString>({QStringLiteral("<b/>"), QStringLiteral("<b a='1'>2</b>"),
                                                   QStringLiteral("<Port>1<Port/></Port>")}));
        return content;
    }

    QString value(Form form)
    {
        switch (form) {
        case Form::Unsigned:
            if (losesSomething())
                return m_random.from<QString>(
                    {QStringLiteral("-1"), QStringLiteral("4294967295"), QStringLiteral("2147483648"),
                     QStringLiteral("-2147483648"), QStringLiteral("99999999999"), QStringLiteral("1.0"),
                     QStringLiteral("1e3"), QStringLiteral("0x10"), QString(), QStringLiteral("x")});
            return m_random.from<QString>({QStringLiteral("5000"), QStringLiteral("007"),
                                           QStringLiteral("+7"), QStringLiteral(" 7 "), QStringLiteral("-0"),
                                           QStringLiteral("2147483647"),
                                           QString::number(m_random.below(1 << 30))});
        case Form::Double:
            return decimal();
        case Form::Boolean:
            return losesSomething()
                       ? m_random.from<QString>({QStringLiteral("yes"), QString(), QStringLiteral(" true"),
                                                 QStringLiteral("2"), QStringLiteral("no")})
                       : m_random.from<QString>({QStringLiteral("true"), QStringLiteral("false"),
                                                 QStringLiteral("TRUE"), QStringLiteral("False"),
                                                 QStringLiteral("0"), QStringLiteral("1")});
        case Form::Type:
        case Form::State:
            return enumerator(form);
        default:
            return text();
        }
    }

    // The text in one of its possible spellings.
    QString spelled(const QString& text)
    {
        QString result;
        for (int i = 0; i < static_cast<int>(text.size()); ++i) {
            const QChar character = text.at(i);
            if (character.isSurrogate()) {
                result += character;
                continue;
            }
            if (m_random.oneIn(12)) {
                result += QStringLiteral("&#x%1;").arg(character.unicode(), 0, 16);
            } else if (m_random.oneIn(12) && character != QLatin1Char('\r')) {
                result += QStringLiteral("<![CDATA[%1]]>").arg(character);
            } else if (character == QLatin1Char('\r')) {
                result += m_random.oneIn(2) ? QStringLiteral("&#13;") : QStringLiteral("\r");
            } else {
                result += QString(character).toHtmlEscaped();
            }
            if (m_random.oneIn(30))
                result += m_random.from<QString>({QStringLiteral("<!--c-->"), QStringLiteral("<?p i?>")});
        }
        return result;
    }
};

class BinaryMaker : Maker
{
public:
    BinaryMaker(Random& random, int lossy) : Maker(random, lossy) {}

    QByteArray document(const Class& root) { return word(root.id) + frame(record(root)); }

private:
    QByteArray record(const Class& own)
    {
        QByteArray entries;
        const QVector<Member> members = membersOf(own);
        for (int i = 0; i < static_cast<int>(members.size()); ++i) {
            const Member& member = members.at(i);
            QByteArray payload;
            if (member.form == Form::Record)
                payload = record(classNamed(QLatin1String(member.name)));
            else if (member.form == Form::List)
                payload = items(m_random.below(4));
            else
                payload = scalar(member.form);
            entries += entry(member.tag, payload);
            if (losesSomething())
                entries += entry(unknownTag, bytes("0102"));
        }
        return losesSomething() ? withWrongLengths(entries) : entries;
    }

    // Makes two lengths wrong, so that they cancel each other out in the sum.
    QByteArray withWrongLengths(QByteArray entries)
    {
        if (entries.size() < 8)
            return entries;
        const int first = qFromBigEndian<qint32>(entries.constData() + 4);
        const int second = 8 + first;
        if (second + 8 > entries.size())
            return entries;
        const int by = m_random.below(9) - 4;
        qToBigEndian<qint32>(first + by, entries.data() + 4);
        qToBigEndian<qint32>(qFromBigEndian<qint32>(entries.constData() + second + 4) - by,
                             entries.data() + second + 4);
        return entries;
    }

    QByteArray items(int count)
    {
        QByteArray elements;
        for (int i = 0; i < count; ++i)
            elements += frame(record(classNamed(QStringLiteral("Fragment"))));
        return list(static_cast<std::uint32_t>(count), elements);
    }

    QByteArray scalar(Form form)
    {
        switch (form) {
        case Form::Unsigned: {
            const auto low = static_cast<std::uint32_t>(m_random.bits());
            return word(losesSomething() ? m_random.from<std::uint32_t>({1, 0xFFFFFFFF, 0x80000000}) : 0)
                   + word(m_random.oneIn(3) ? low >> 16 : low);
        }
        case Form::Boolean:
            return losesSomething() ? m_random.from<QByteArray>({bytes("02"), bytes("FF")})
                                    : m_random.from<QByteArray>({bytes("00"), bytes("01")});
        case Form::Double:
            return textPayload(decimal().toUtf8());
        case Form::Text:
            if (m_random.oneIn(10))
                return bytes("FFFFFFFF");
            return textPayload(losesSomething() ? Maker::text().toUtf8() + notUtf8() : anyText());
        default:
            return m_random.oneIn(20) ? bytes("FFFFFFFF") : textPayload(enumerator(form).toUtf8());
        }
    }

    QByteArray anyText()
    {
        return Maker::text().toUtf8()
               + (m_random.oneIn(5) ? m_random.from<QByteArray>(
                      {bytes("00"), bytes("01"), bytes("EFBFBE"), bytes("EFBFBD"), bytes("F48FBFBF")})
                                    : QByteArray());
    }

    QByteArray notUtf8()
    {
        return m_random.from<QByteArray>({bytes("FF"), bytes("C0AF"), bytes("E08080"), bytes("EDA080"),
                                          bytes("EDB080"), bytes("EDA081EDB080"), bytes("C3"), bytes("80"),
                                          bytes("F5808080"), bytes("F4908080"), bytes("E282")});
    }
};

// Changes some bytes at random.
QByteArray damaged(QByteArray bytes, Random& random)
{
    for (int left = 1 + random.below(3); left > 0 && !bytes.isEmpty(); --left) {
        const int at = random.below(static_cast<int>(bytes.size()));
        const int other = random.below(static_cast<int>(bytes.size()));
        switch (random.below(5)) {
        case 0:
            bytes[at] = static_cast<char>(random.below(256));
            break;
        case 1:
            bytes.remove(at, 1 + random.below(4));
            break;
        case 2:
            bytes.insert(at, bytes.mid(other, 1 + random.below(12)));
            break;
        case 3:
            bytes[at] = bytes.at(other);
            break;
        default:
            bytes[at] = static_cast<char>(bytes.at(at) ^ 1 << random.below(8));
        }
    }
    return bytes;
}

// --- the promise ----------------------------------------------------------------------------------

struct Counts
{
    int documents = 0;
    int read = 0;
    int clean = 0;
    std::set<int> kinds;
};

template <class Action>
bool succeeds(const Action& action)
{
    try {
        return action();
    } catch (const ModelKitException&) {
        return false;
    }
}

// Reads with a report. Returns whether reading succeeded without an entry.
template <class Read>
bool readsCleanly(IMKObject& object, Counts& counts, const Read& read)
{
    const ReadingReport report;
    ++counts.documents;
    if (!succeeds([&] { return read(object); }))
        return false;
    ++counts.read;
    for (const ReadingReport::Entry& entry : report.GetEntries())
        counts.kinds.insert(entry.kind);
    if (!report.GetEntries().isEmpty())
        return false;
    ++counts.clean;
    return true;
}

QString printable(const Information& information) { return information.join(QLatin1Char('\n')); }

// Writes the record, which holds that information, with validation on and off, and reads the result.
template <class Write, class Read, class Extract>
void expectNothingLost(const Class& own, IMKObject& object, const Information& information,
                       const Write& write, const Read& read, const Extract& extract)
{
    for (const bool validate : {false, true}) {
        object.SetValidate(validate);
        decltype(write(object)) written;
        if (!succeeds([&] {
                written = write(object);
                return !written.isNull();
            })) {
            // With validation off, writing may fail only because the form cannot carry a text.
            EXPECT_TRUE(validate || IMKObject::GetLastFailure().kind == MODELKIT::Failure::NotRepresentable);
            continue;
        }
        EXPECT_EQ(printable(extract(written)), printable(information)) << "validation: " << validate;
        const auto again = own.create();
        again->SetValidate(false);
        EXPECT_TRUE(succeeds([&] { return read(*again, written); }));
        EXPECT_TRUE(own.equal(*again, object)) << "validation: " << validate;
    }
}

const Class& anyClass(Random& random)
{
    return classes().at(random.below(random.oneIn(3) ? static_cast<int>(classes().size()) : 3));
}

// The lossiness of the next document.
int anyLoss(Random& random) { return random.from<int>({0, 100, 50, 25, 8}); }

constexpr unsigned int documents = 12000;

// --- records at random ----------------------------------------------------------------------------

// Fills records through their setters with values that the XML form, or the binary form, can carry.
class Filler
{
public:
    Filler(Random& random, bool forXml) : m_random(random), m_forXml(forXml) {}

    void fill(PelLu300RouterInterfaceXml& record)
    {
        if (!m_random.oneIn(10))
            fill(record.GetPelLu300RouterMessage());
    }

private:
    void fill(PelLu300RouterMessage& record)
    {
        record.SetType(static_cast<PelLu300RouterMessage::Type>(m_random.below(3)));
        if (m_random.oneIn(2))
            record.SetMessageID(number());
        while (!m_random.oneIn(3)) {
            Fragment fragment;
            // A payload that was chosen before the last one is not written.
            for (int i = m_random.below(2); i >= 0; --i)
                choose(fragment);
            record.AppendFragment(fragment);
        }
    }

    void choose(Fragment& fragment)
    {
        switch (m_random.below(7)) {
        case 0:
            if (auto& state = fragment.GetMastershipState(); !m_random.oneIn(5)) {
                state.SetState(static_cast<MastershipState::State>(m_random.below(3)));
                state.SetMasterClientID(text());
            }
            break;
        case 1:
            fragment.GetAcquireMastership().SetSuccess(m_random.oneIn(2));
            break;
        case 2:
            fragment.GetReleaseMastership().SetSuccess(m_random.oneIn(2));
            break;
        case 3:
            fragment.GetOstraInterfacePort().SetPort(number());
            break;
        case 4:
            fragment.GetPelVtConnectServer().SetAddress(text());
            break;
        case 5:
            fragment.GetRouterVtServerPort().SetPort(number());
            break;
        default:
            fragment.GetDF_Params().SetFrequency(decimal());
            fragment.GetDF_Params().SetPanoramaSpan(decimal());
        }
    }

    unsigned int number()
    {
        const auto any = static_cast<unsigned int>(m_random.bits());
        return m_forXml ? any >> 1 : any;
    }

    double decimal()
    {
        double any = 0;
        do {
            const quint64 bits = m_random.bits();
            std::memcpy(&any, &bits, sizeof any);
        } while (!std::isfinite(any));
        return m_random.oneIn(2) ? any : std::ldexp(std::fmod(any, 1), m_random.below(60));
    }

    QString text()
    {
        QString result = empty();
        for (int left = m_random.below(6); left > 0; --left) {
            const auto code = static_cast<ushort>(m_random.below(0x10000));
            const QChar character(static_cast<ushort>(m_random.oneIn(2) ? code % 0x80 : code));
            const bool isControl = character.unicode() < 0x20 && character != QLatin1Char('\t')
                                   && character != QLatin1Char('\n') && character != QLatin1Char('\r');
            const bool isForXml = !isControl && character.unicode() < 0xFFFE;
            if (!character.isSurrogate() && (isForXml || !m_forXml))
                result += character;
        }
        return result;
    }

    Random& m_random;
    bool m_forXml;
};

} // namespace

TEST(ReportProperty, XmlThatIsReadWithoutAnEntryLosesNothing)
{
    Counts counts;
    for (unsigned int seed = 1; seed <= documents && !::testing::Test::HasFailure(); ++seed) {
        Random random(seed);
        const Class& own = anyClass(random);
        QString xml = XmlMaker(random, anyLoss(random)).document(own);
        QByteArray bytes = xml.toUtf8();
        if (random.oneIn(3)) {
            bytes = damaged(bytes, random);
            xml = QString::fromUtf8(bytes);
        }
        const bool asBytes = random.oneIn(10);
        SCOPED_TRACE(::testing::Message() << "seed " << seed << ":\n" << bytes.toStdString());
        const auto object = own.create();
        object->SetValidate(random.oneIn(2));
        if (!readsCleanly(*object, counts, [&](IMKObject& to) {
                return asBytes ? to.SetXmlBytes(bytes) : to.SetXmlString(xml, false);
            }))
            continue;
        expectNothingLost(
            own, *object, XmlInformation::of(xml), [](IMKObject& from) { return from.GetXmlString(); },
            [](IMKObject& to, const QString& written) { return to.SetXmlString(written, false); },
            [](const QString& written) { return XmlInformation::of(written); });
    }
    // Otherwise the test would have checked too little.
    EXPECT_GT(counts.clean, counts.documents / 4);
    EXPECT_GT(counts.read - counts.clean, counts.documents / 5);
    using R = ReadingReport;
    EXPECT_EQ(counts.kinds, std::set<int>({R::UnknownElement, R::RepeatedMember, R::Attribute, R::NotANumber,
                                           R::WrappedNumber, R::LostDecimals, R::UnusualBoolean,
                                           R::ReplacedPayload, R::IgnoredText, R::ElementInText, R::NotFinite,
                                           R::UnknownName, R::MissingMember, R::MissingPayload, R::Prefix}));
}

TEST(ReportProperty, BinaryFormsThatAreReadWithoutAnEntryLoseNothing)
{
    Counts counts;
    for (unsigned int seed = 1; seed <= 2 * documents && !::testing::Test::HasFailure(); ++seed) {
        Random random(seed);
        const Class& own = anyClass(random);
        QByteArray form = BinaryMaker(random, anyLoss(random)).document(own);
        if (random.oneIn(3))
            form = form.left(8) + damaged(form.mid(8), random);
        SCOPED_TRACE(::testing::Message()
                     << "seed " << seed << ", " << own.name << ": " << form.toHex(' ').toStdString());
        const auto object = own.create();
        object->SetValidate(random.oneIn(2));
        if (!readsCleanly(*object, counts, [&](IMKObject& to) { return to.SetBinaryRepresentation(form); }))
            continue;
        expectNothingLost(
            own, *object,
            BinaryInformation::of(form.left(8 + qFromBigEndian<qint32>(form.constData() + 4)), own),
            [](IMKObject& from) { return from.GetBinaryRepresentationAsQByteArray(); },
            [](IMKObject& to, QByteArray written) { return to.SetBinaryRepresentation(written); },
            [&](const QByteArray& written) { return BinaryInformation::of(written, own); });
    }
    EXPECT_GT(counts.clean, counts.documents / 4);
    EXPECT_GT(counts.read - counts.clean, counts.documents / 5);
    using R = ReadingReport;
    EXPECT_EQ(
        counts.kinds,
        std::set<int>({R::UnknownTag, R::BytesBehind, R::RepeatedMember, R::NotANumber, R::WrappedNumber,
                       R::LostDecimals, R::UnusualBoolean, R::ReplacedPayload, R::ReplacedCharacters,
                       R::NotFinite, R::UnknownName, R::MissingMember, R::MissingPayload, R::WrongLength}));
}

TEST(ReportProperty, WhatTheLibraryWritesIsReadWithoutAnEntry)
{
    for (unsigned int seed = 1; seed <= documents && !::testing::Test::HasFailure(); ++seed) {
        Random random(seed);
        const bool asXml = random.oneIn(2);
        PelLu300RouterInterfaceXml document;
        document.SetValidate(random.oneIn(2));
        Filler(random, asXml).fill(document);
        const QString xml = asXml ? document.GetXmlString() : QString();
        QByteArray form = asXml ? QByteArray() : document.GetBinaryRepresentationAsQByteArray();
        SCOPED_TRACE(::testing::Message()
                     << "seed " << seed << ": " << xml.toStdString() << form.toHex(' ').toStdString());
        Counts counts;
        PelLu300RouterInterfaceXml read;
        read.SetValidate(random.oneIn(2));
        EXPECT_TRUE(readsCleanly(read, counts, [&](IMKObject& to) {
            return asXml ? to.SetXmlString(xml, true) : to.SetBinaryRepresentation(form);
        }));
        // The decimals have been rounded once, so they do not change any more.
        PelLu300RouterInterfaceXml again;
        EXPECT_TRUE(asXml ? again.SetXmlString(read.GetXmlString(), true)
                          : again.SetBinaryRepresentation(form = read.GetBinaryRepresentationAsQByteArray()));
        EXPECT_TRUE(again == read);
    }
}
