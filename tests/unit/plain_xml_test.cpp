// SPDX-License-Identifier: MIT
// Whole documents in the usual spelling are read and written without Qt's stream classes. Nobody can tell:
// the tests read and write random documents in both ways and compare everything that can be seen.
//
// Qt's reader reads a document of which somebody wants a report, and Qt's writer writes records of derived
// classes.
//
//     PLAIN_XML_ROUNDS=100000 plain_xml_test      tries that many documents, in two minutes at most
//     PLAIN_XML_SEED=7 plain_xml_test             tries others

#include "TestSupport.h"

#include "modelkit/PlainXmlReader.h"
#include "modelkit/ReadingReport.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <functional>
#include <random>
#include <string>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::PlainXml;

namespace {

int numberFrom(const char* variable, int otherwise)
{
    const QByteArray value = qgetenv(variable);
    return value.isEmpty() ? otherwise : value.toInt();
}

// --- random documents -----------------------------------------------------------------------------

class Random
{
public:
    explicit Random(unsigned int seed) : m_engine(seed) {}

    int below(int limit) { return static_cast<int>(m_engine() % static_cast<unsigned int>(limit)); }
    bool oneIn(int number) { return below(number) == 0; }

    template <class Container>
    const auto& of(const Container& container)
    {
        return container[static_cast<std::size_t>(below(static_cast<int>(std::size(container))))];
    }

private:
    std::mt19937 m_engine;
};

const char* const recordNames[] = {"PelLu300RouterInterfaceXml",
                                   "PelLu300RouterMessage",
                                   "Fragment",
                                   "MastershipState",
                                   "AcquireMastership",
                                   "ReleaseMastership",
                                   "OstraInterfacePort",
                                   "PelVtConnectServer",
                                   "RouterVtServerPort",
                                   "DF_Params"};
const char* const valueNames[] = {
    "Type",    "MessageID", "State",     "MasterClientID",        "Success",     "Port",
    "Address", "Frequency", "Bandwidth", "DemodulationFrequency", "PanoramaSpan"};
const char* const strangeNames[] = {"x", "_x-1.2", "Typ", "fragment", "Fragment2"};
const char* const values[] = {"",
                              "0",
                              "1",
                              "7",
                              "-1",
                              "4294967296",
                              "2147483647",
                              "true",
                              "false",
                              "TRUE",
                              "Request",
                              "Reply",
                              "Event",
                              "Replay",
                              "98.5",
                              "1e3",
                              "98.437",
                              "nan",
                              "-inf",
                              "12345678901234567890",
                              " 7 ",
                              "\t7\n",
                              "a&amp;b",
                              "&lt;&gt;",
                              "&quot;&apos;",
                              "x&#13;y",
                              "MasterPresent",
                              "\r\n",
                              "a\rb",
                              "\xC3\xA9",
                              "\xF0\x9F\x98\x80",
                              "\xE2\x82\xAC",
                              "]]",
                              "\xEF\xBB\xBF",
                              "RouterIsMaster",
                              "\xEF\xBF\xBD",
                              "\x7F",
                              "a long text that does not fit into a word"};
const char* const oddities[] = {"<",
                                ">",
                                "&",
                                "&#13;",
                                "&#x41;",
                                "&unknown;",
                                "&#0;",
                                "<!-- -->",
                                "<![CDATA[x]]>",
                                "]]>",
                                "<?pi x?>",
                                "<!DOCTYPE x>",
                                " a=\"b\"",
                                "/>",
                                "</",
                                "</Fragment>",
                                "<Fragment>",
                                "<a:b>",
                                "\r",
                                "\n",
                                " ",
                                "\x01",
                                "\xFF",
                                "\xED\xA0\x80",
                                "\xEF\xBF\xBE",
                                "\xEF\xBF\xBF",
                                "\xEF\xBB\xBF",
                                "=",
                                "'",
                                "\"",
                                "\xC3",
                                "\0",
                                "<?xml version=\"1.0\"?>",
                                "<Type>Reply</Type>",
                                "<x><x></x></x>",
                                "<1/>",
                                "<-a/>"};
// The first ones are usual.
const char* const declarations[] = {"",
                                    "<?xml version=\"1.0\"?>",
                                    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
                                    "<?xml version=\"1.0\" encoding=\"utf-8\"?>",
                                    "\xEF\xBB\xBF<?xml version=\"1.0\"?>",
                                    "\xEF\xBB\xBF",
                                    "<?xml version='1.0'?>",
                                    "<?xml version=\"1.1\"?>",
                                    "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>",
                                    "<?xml version=\"1.0\" encoding=\"nonsense\"?>"};

constexpr int usualDeclarations = 3;
constexpr int declarationCount = std::size(declarations);

// Mostly as the records nest, sometimes in another way.
class Documents
{
public:
    explicit Documents(Random& random) : m_random(random) {}

    QByteArray make()
    {
        m_isIndented = m_random.oneIn(2);
        QByteArray document =
            declarations[m_random.below(m_random.oneIn(4) ? declarationCount : usualDeclarations)];
        if (m_isIndented)
            document += '\n';
        const int root = m_random.oneIn(3) ? m_random.below(10) : 0;
        record(document, root, 0);
        if (m_random.oneIn(2))
            document += '\n';
        while (m_random.oneIn(4))
            damage(document);
        return document;
    }

private:
    void record(QByteArray& document, int which, int depth)
    {
        element(document, recordNames[which], depth, [&] {
            const int children = m_random.below(5);
            for (int i = 0; i < children; ++i)
                child(document, which, depth + 1);
            return children > 0;
        });
    }

    void child(QByteArray& document, int which, int depth)
    {
        if (depth < 6 && m_random.oneIn(12))
            record(document, m_random.below(10), depth);
        else if (which < 2 && m_random.oneIn(2))
            record(document, which + 1, depth);
        else if (which == 2 && !m_random.oneIn(6))
            record(document, 3 + m_random.below(7), depth);
        else
            value(document, depth);
    }

    void value(QByteArray& document, int depth)
    {
        const char* const name = m_random.oneIn(8) ? m_random.of(strangeNames) : m_random.of(valueNames);
        if (m_isIndented)
            indent(document, depth);
        document += QByteArray("<") + name + '>' + m_random.of(values);
        if (m_random.oneIn(20))
            document += QByteArray("<") + m_random.of(valueNames) + ">7</" + m_random.of(valueNames) + ">8";
        document += QByteArray("</") + name + '>';
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

    void damage(QByteArray& document)
    {
        const int at = m_random.below(static_cast<int>(document.size()) + 1);
        switch (m_random.below(4)) {
        case 0:
            document.truncate(at);
            break;
        case 1:
            document.remove(at, 1 + m_random.below(4));
            break;
        default:
            document.insert(at, m_random.of(oddities));
        }
    }

    Random& m_random;
    bool m_isIndented = false;
};

// --- reading --------------------------------------------------------------------------------------

// All that a caller can see after reading.
std::string textOf(const MODELKIT::Place& place)
{
    return place.path.toStdString() + '|' + std::to_string(place.line) + ':' + std::to_string(place.column);
}

template <class R>
std::string seenOf(R& record, const std::function<bool(R&)>& read)
{
    std::string seen;
    try {
        seen = read(record) ? "true" : "false";
    } catch (const ModelKitException& exception) {
        seen = exception.GetText().toStdString() + " at " + textOf(exception.GetPlace());
    }
    const Failure& failure = IMKObject::GetLastFailure();
    seen += "; " + std::to_string(failure.kind) + ' ' + failure.text.toStdString() + " at "
            + textOf(failure.place);
    record.SetValidate(false);
    // Not compared with ==, because nan differs from itself.
    seen += "; " + record.GetBinaryRepresentationAsQByteArray().toHex().toStdString() + "; "
            + record.GetCompactXmlString().toStdString();
    return seen;
}

// A record that holds something, or has a default that does, or neither.
template <class R>
void fillAtRandom(R& record, Random& random, bool isValid)
{
    if (random.oneIn(2))
        record.SetXmlString(
            QStringLiteral("<%1><Port>5</Port><MasterClientID>old</MasterClientID><Success>1</Success>"
                           "<Frequency>7</Frequency></%1>")
                .arg(record.GetObjectName()),
            false);
    record.SetValidate(isValid);
}

PelLu300RouterMessage messageWith(unsigned int id)
{
    PelLu300RouterMessage message;
    message.SetMessageID(id);
    return message;
}

PelVtConnectServer serverAt(const QString& address)
{
    PelVtConnectServer server;
    server.SetAddress(address);
    return server;
}

template <>
void fillAtRandom(PelLu300RouterInterfaceXml& record, Random& random, bool isValid)
{
    if (random.oneIn(3))
        record.GetPelLu300RouterMessage().SetMessageID(9);
    if (random.oneIn(3))
        record.SetDefaultPelLu300RouterMessage(messageWith(11));
    record.SetValidate(isValid);
}

template <>
void fillAtRandom(Fragment& record, Random& random, bool isValid)
{
    if (random.oneIn(3))
        record.GetPelVtConnectServer().SetPort(9);
    if (random.oneIn(3))
        record.SetDefaultPelVtConnectServer(serverAt(QStringLiteral("default")));
    record.SetValidate(isValid);
}

// Reads the document into two equal records.
template <class R>
void expectReadAlike(const QByteArray& xml, Random& random, const std::function<bool(R&)>& read)
{
    R plainly;
    R byStream;
    const bool isValid = random.oneIn(2);
    Random same = random;
    fillAtRandom(plainly, random, isValid);
    fillAtRandom(byStream, same, isValid);
    const std::string seen = seenOf(plainly, read);
    const std::string expected = seenOf<R>(byStream, [&read](R& record) {
        const MODELKIT::ReadingReport report;
        return read(record);
    });
    ASSERT_EQ(seen, expected) << xml.toStdString();
    ASSERT_EQ(plainly.IsInitialized(), byStream.IsInitialized()) << xml.toStdString();
}

template <class R>
void expectReadAlike(const QByteArray& xml, Random& random)
{
    MODELKIT::Limits limits;
    if (random.oneIn(8))
        limits.nestingDepth = random.below(6);
    if (random.oneIn(8))
        limits.listItems = random.below(3);
    if (random.oneIn(30))
        limits.inputSize = random.below(300);
    const MODELKIT::LimitsInScope inScope(limits);
    const bool checks = random.oneIn(2);
    if (random.oneIn(2))
        expectReadAlike<R>(xml, random, [&](R& record) { return record.SetXmlBytes(xml, checks); });
    else
        expectReadAlike<R>(xml, random,
                           [&](R& record) { return record.SetXmlString(QString::fromUtf8(xml), checks); });
}

TEST(PlainXmlDocuments, AreReadAsByQtsReader)
{
    Random random(static_cast<unsigned int>(numberFrom("PLAIN_XML_SEED", 1)));
    Documents documents(random);
    const int rounds = numberFrom("PLAIN_XML_ROUNDS", 20000);
    int plain = 0;
    for (int i = 0; i < rounds && !HasFatalFailure(); ++i) {
        const QByteArray xml = documents.make();
        const std::string_view view(xml.constData(), static_cast<std::size_t>(xml.size()));
        plain += PlainXml::Find(view, MODELKIT::Limits().nestingDepth) ? 1 : 0;
        if (xml.contains("Fragment") && random.oneIn(4))
            expectReadAlike<Fragment>(xml, random);
        else if (random.oneIn(6))
            expectReadAlike<PelLu300RouterMessage>(xml, random);
        else if (random.oneIn(10))
            expectReadAlike<MastershipState>(xml, random);
        else
            expectReadAlike<PelLu300RouterInterfaceXml>(xml, random);
    }
    // Otherwise the test compares Qt's reader with itself.
    EXPECT_GT(plain, rounds / 3);
    EXPECT_LT(plain, rounds);
}

// A string may hold what no bytes can.
TEST(PlainXmlDocuments, AreReadAsByQtsReaderFromStringsWithSurrogates)
{
    Random random(2);
    const QString lead = QStringLiteral("<MastershipState><MasterClientID>ab");
    const QString trail = QStringLiteral("</MasterClientID></MastershipState>");
    const char16_t codes[] = {0x41,   0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000,
                              0xFFFD, 0xFFFE, 0xFFFF, 0xFEFF, 0x1F,   0x85};
    for (const char16_t first : codes)
        for (const char16_t second : codes)
            for (int shift = 0; shift < 5; ++shift) {
                const QString xml =
                    lead + QString(shift, QLatin1Char('x')) + QChar(first) + QChar(second) + trail;
                expectReadAlike<MastershipState>(xml.toUtf8(), random, [&xml](MastershipState& record) {
                    return record.SetXmlString(xml, false);
                });
            }
}

TEST(PlainXmlDocuments, AreReadAsByQtsReaderFromFiles)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    Random random(3);
    Documents documents(random);
    for (int i = 0; i < 300 && !HasFatalFailure(); ++i) {
        const QByteArray xml = documents.make();
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(xml), xml.size());
        file.close();
        expectReadAlike<PelLu300RouterInterfaceXml>(
            xml, random, [&path](PelLu300RouterInterfaceXml& record) { return record.LoadXml(path); });
    }
}

TEST(PlainXmlDocuments, MayHaveVeryLongTextsAndNames)
{
    Random random(4);
    for (const int size : {254, 255, 256, 4095, 4096, 70000}) {
        const QByteArray name(size, 'n');
        const QByteArray xml = "<MastershipState><" + name + ">1</" + name + "><MasterClientID>" + name
                               + "&amp;</MasterClientID></MastershipState>";
        expectReadAlike<MastershipState>(xml, random,
                                         [&xml](MastershipState& record) { return record.SetXmlBytes(xml); });
    }
}

// --- writing --------------------------------------------------------------------------------------

template <class R>
struct Derived : R
{
};

QString unusualText(Random& random)
{
    const char16_t codes[] = {'a',  'b',  '<',  '>',   '&',   '"',    '\'',   '\r',   '\n',   '\t',
                              0x7F, 0x80, 0xE9, 0x7FF, 0x800, 0x20AC, 0xD83D, 0xDE00, 0xFEFF, 0xFFFD};
    const char16_t forbidden[] = {0, 1, 0x1F, 0xD800, 0xDC00, 0xFFFE, 0xFFFF};
    QString text = QLatin1String("");
    for (int size = random.oneIn(50) ? 3000 : random.below(6); size > 0; --size)
        text += QChar(random.of(codes));
    if (random.oneIn(6))
        text.insert(random.below(static_cast<int>(text.size()) + 1), QChar(random.of(forbidden)));
    return text;
}

template <class R>
void expectWrittenAlike(R& record)
{
    Derived<R> derived;
    derived.R::operator=(record);
    derived.SetValidate(record.GetValidate());
    const auto seen = [](const auto& write) {
        std::string result;
        try {
            const auto written = write();
            result = (written.isNull() ? "null " : "") + QString(written).toStdString();
        } catch (const ModelKitException& exception) {
            result = exception.GetText().toStdString() + " at " + textOf(exception.GetPlace());
        }
        const Failure& failure = IMKObject::GetLastFailure();
        return result + "; " + failure.text.toStdString() + " at " + textOf(failure.place);
    };
    ASSERT_EQ(seen([&] { return record.GetXmlString(); }), seen([&] { return derived.GetXmlString(); }));
    ASSERT_EQ(seen([&] { return record.GetCompactXmlString(); }),
              seen([&] { return derived.GetCompactXmlString(); }));
    for (const auto layout : {MODELKIT::XmlLayout::Indented, MODELKIT::XmlLayout::Compact})
        ASSERT_EQ(seen([&] { return record.GetXmlBytes(layout); }),
                  seen([&] { return derived.GetXmlBytes(layout); }));
}

TEST(PlainXmlDocuments, AreWrittenAsByQtsWriter)
{
    Random random(static_cast<unsigned int>(numberFrom("PLAIN_XML_SEED", 1)));
    Documents documents(random);
    const int rounds = numberFrom("PLAIN_XML_ROUNDS", 20000) / 4;
    int written = 0;
    for (int i = 0; i < rounds && !HasFatalFailure(); ++i) {
        PelLu300RouterInterfaceXml record;
        if (!record.SetXmlBytes(documents.make()))
            continue;
        Fragment fragment;
        fragment.GetMastershipState().SetMasterClientID(unusualText(random));
        if (random.oneIn(2))
            record.GetPelLu300RouterMessage().AppendFragment(fragment);
        if (random.oneIn(4))
            record.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Event);
        record.SetValidate(random.oneIn(2));
        expectWrittenAlike(record);
        if (HasFatalFailure())
            break;
        expectWrittenAlike(fragment);
        ++written;
    }
    EXPECT_GT(written, rounds / 4);
}

} // namespace
