// SPDX-License-Identifier: MIT
// Whole documents that are cut off, damaged or made to do harm: reading soon succeeds or fails with one
// explanation, and the record can be used as before.

#include "DocumentParts.h"
#include "TestSupport.h"

#include "modelkit/LogSinks.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryFile>

#include <array>
#include <functional>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::Limits;
using MODELKIT::LimitsInScope;
using MODELKIT::Place;

namespace {

// A document with each of the seven payloads and a line break behind the root element.
const char* const documentXml =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Reply</Type><MessageID>7</MessageID>\n"
    "<Fragment><MastershipState><State>MasterPresent</State><MasterClientID>z\xC3\xBC</MasterClientID>"
    "</MastershipState></Fragment>\n"
    "<Fragment><AcquireMastership><Success>true</Success></AcquireMastership></Fragment>\n"
    "<Fragment><ReleaseMastership><Success>false</Success></ReleaseMastership></Fragment>\n"
    "<Fragment><OstraInterfacePort><Port>5000</Port></OstraInterfacePort></Fragment>\n"
    "<Fragment><PelVtConnectServer><Address>a&amp;b</Address><Port>7</Port></PelVtConnectServer></Fragment>\n"
    "<Fragment><RouterVtServerPort><Port>443</Port></RouterVtServerPort></Fragment>\n"
    "<Fragment><DF_Params><Frequency>98.50</Frequency></DF_Params></Fragment>\n"
    "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>\n";

// The same in the whole-object form.
const char* const documentForm = "8553499A 00000113 9B1A7AD8 0000010B"
                                 "E1D9E008 00000009 00000005 5265706C79"
                                 "EF193DE9 00000008 0000000000000007"
                                 "61023A90 000000E2 00000007"
                                 "00000030 111939B4 00000028"
                                 "4264F498 00000011 0000000D 4D617374657250726573656E74"
                                 "0BCD2CF7 00000007 00000003 7AC3BC"
                                 "00000011 21BDA6E2 00000009 BF8A59C6 00000001 01"
                                 "00000011 FC38AB7C 00000009 BF8A59C6 00000001 00"
                                 "00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388"
                                 "00000027 0BBAB464 0000001F"
                                 "2AC271EC 00000007 00000003 612662 1F980517 00000008 0000000000000007"
                                 "00000018 5D020EA0 00000010 1F980517 00000008 00000000000001BB"
                                 "00000019 BE2DFF74 00000011 A97DB5BE 00000009 00000005 39382E3530";

PelLu300RouterInterfaceXml original()
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Reply);
    message.SetMessageID(7);
    const auto append = [&message](const std::function<void(Fragment&)>& fill) {
        Fragment fragment;
        fill(fragment);
        message.AppendFragment(fragment);
    };
    append([](Fragment& fragment) {
        fragment.GetMastershipState().SetState(MastershipState::MasterPresent);
        fragment.GetMastershipState().SetMasterClientID(QStringLiteral("z\u00FC"));
    });
    append([](Fragment& fragment) { fragment.GetAcquireMastership().SetSuccess(true); });
    append([](Fragment& fragment) { fragment.GetReleaseMastership().SetSuccess(false); });
    append([](Fragment& fragment) { fragment.GetOstraInterfacePort().SetPort(5000); });
    append([](Fragment& fragment) {
        fragment.GetPelVtConnectServer().SetAddress(QStringLiteral("a&b"));
        fragment.GetPelVtConnectServer().SetPort(7);
    });
    append([](Fragment& fragment) { fragment.GetRouterVtServerPort().SetPort(443); });
    append([](Fragment& fragment) { fragment.GetDF_Params().SetFrequency(98.5); });
    return document;
}

// --- the ways in which a document comes in --------------------------------------------------------

// Reads bytes of one form into the same record, as often as wanted.
class Reader
{
public:
    virtual ~Reader() = default;
    virtual bool read(PelLu300RouterInterfaceXml& document, const QByteArray& input) = 0;
    virtual bool isXml() const { return false; }
};

class XmlString : public Reader
{
public:
    bool read(PelLu300RouterInterfaceXml& document, const QByteArray& input) override
    {
        return document.SetXmlString(QString::fromUtf8(input), false);
    }
    bool isXml() const override { return true; }
};

class FileReader : public Reader
{
public:
    FileReader() { EXPECT_TRUE(m_file.open()); }

protected:
    QFile* hold(const QByteArray& input)
    {
        m_file.resize(0);
        m_file.seek(0);
        EXPECT_EQ(m_file.write(input), input.size());
        m_file.seek(0);
        return &m_file;
    }

private:
    QTemporaryFile m_file;
};

class XmlFile : public FileReader
{
public:
    bool read(PelLu300RouterInterfaceXml& document, const QByteArray& input) override
    {
        return document.LoadXml(hold(input));
    }
    bool isXml() const override { return true; }
};

class BinaryFile : public FileReader
{
public:
    bool read(PelLu300RouterInterfaceXml& document, const QByteArray& input) override
    {
        return document.LoadBinary(hold(input));
    }
};

class Bytes : public Reader
{
public:
    bool read(PelLu300RouterInterfaceXml& document, const QByteArray& input) override
    {
        QByteArray copy = input;
        return document.SetBinaryRepresentation(copy);
    }
};

class Stream : public Reader
{
public:
    bool read(PelLu300RouterInterfaceXml& document, const QByteArray& input) override
    {
        QDataStream stream(input);
        const bool read = document.SetBinaryRepresentation(stream);
        if (!read) {
            EXPECT_EQ(stream.device()->pos(), 0);
        }
        return read;
    }
};

// --- what every reading must keep to --------------------------------------------------------------

enum class Outcome
{
    Read,
    Refused,
    Thrown
};

// A record with its log, into which one input after the other is read.
class Victim
{
public:
    explicit Victim(Reader& reader, bool validate) : m_reader(reader)
    {
        m_document.SetValidate(validate);
        m_document.SetLogger(std::make_shared<MODELKIT::Logger>(m_sink));
    }

    // Reads the input and expects success or an explanation.
    Outcome read(const QByteArray& input)
    {
        m_sink->Clear();
        m_thrown.clear();
        Outcome outcome = Outcome::Read;
        Place place;
        try {
            if (!m_reader.read(m_document, input)) {
                outcome = Outcome::Refused;
                place = IMKObject::GetLastFailure().place;
            }
        } catch (const MKException& exception) {
            outcome = Outcome::Thrown;
            m_thrown = typeid(exception).name();
            place = exception.GetPlace();
            EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::Refused);
            EXPECT_EQ(IMKObject::GetLastFailure().text, exception.GetText());
            EXPECT_FALSE(exception.GetText().isEmpty());
            EXPECT_TRUE(place.path.startsWith(text(rootPath)));
        }
        if (outcome == Outcome::Read) {
            EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::None);
            EXPECT_TRUE(m_sink->GetEntries().isEmpty());
        } else {
            expectExplained(place, input.size(), input.startsWith("MKZ1"));
        }
        return outcome;
    }

    // Expects that the original document can be read now, whatever was read before.
    void expectUsable(const QByteArray& input)
    {
        m_sink->Clear();
        EXPECT_TRUE(m_reader.read(m_document, input));
        EXPECT_TRUE(m_document == m_original);
        EXPECT_TRUE(m_sink->GetEntries().isEmpty());
    }

    const PelLu300RouterInterfaceXml& document() const { return m_document; }

    template <class Exception>
    bool hasThrown() const
    {
        return m_thrown == typeid(Exception).name();
    }

private:
    void expectExplained(const Place& place, qint64 size, bool isCompressed)
    {
        const Failure& failure = IMKObject::GetLastFailure();
        EXPECT_NE(failure.kind, Failure::None);
        EXPECT_FALSE(failure.text.isEmpty());
        if (m_reader.isXml()) {
            EXPECT_GE(place.line, 1);
            EXPECT_GE(place.column, 1);
        } else {
            EXPECT_GE(place.offset, 0);
            // In a compressed form, offsets count the bytes of the form inside.
            EXPECT_LE(place.offset, isCompressed ? std::max(size, Limits::Get().inflatedSize) : size);
        }
        ASSERT_EQ(m_sink->GetEntries().size(), 1);
        EXPECT_EQ(m_sink->GetEntries().first().level, MODELKIT::Logger::Error);
        EXPECT_EQ(m_sink->GetEntries().first().text, failure.GetSentence());
        EXPECT_TRUE(failure.GetSentence().contains(failure.text));
    }

    Reader& m_reader;
    std::shared_ptr<MODELKIT::MemoryLogSink> m_sink = std::make_shared<MODELKIT::MemoryLogSink>();
    PelLu300RouterInterfaceXml m_document;
    const PelLu300RouterInterfaceXml m_original = original();
    std::string m_thrown;
};

struct Outcomes
{
    int read = 0;
    int refused = 0;
    int thrown = 0;
};

// Reads the input with each of its bytes changed by each mask.
template <class Masks>
Outcomes readDamaged(Reader& reader, const QByteArray& input, const Masks& masks, bool validate)
{
    Outcomes outcomes;
    Victim victim(reader, validate);
    for (int at = 0; at < static_cast<int>(input.size()); ++at) {
        for (const int mask : masks) {
            SCOPED_TRACE(::testing::Message() << "byte " << at << " changed by " << mask);
            QByteArray damaged = input;
            damaged[at] = static_cast<char>(damaged.at(at) ^ mask);
            switch (victim.read(damaged)) {
            case Outcome::Read:
                ++outcomes.read;
                break;
            case Outcome::Refused:
                ++outcomes.refused;
                break;
            case Outcome::Thrown:
                ++outcomes.thrown;
                break;
            }
            victim.expectUsable(input);
        }
    }
    return outcomes;
}

constexpr std::array<int, 4> allMasks = {0x01, 0x20, 0x80, 0xFF};
constexpr std::array<int, 2> twoMasks = {0x01, 0x80};

QByteArray plainForm() { return bytes(documentForm); }
QByteArray packedForm() { return original().GetCompressedBinaryRepresentationAsQByteArray(9); }

// Suppresses the message that Qt prints for every piece that zlib refuses.
class QuietQt
{
public:
    QuietQt() : m_before(qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {}))
    {}
    ~QuietQt() { qInstallMessageHandler(m_before); }

private:
    QtMessageHandler m_before;
};

// Expects that the input is refused for that reason and with that sentence, and that the record can be used.
void expectRefused(Reader& reader, const QByteArray& input, Failure::Kind kind, const QString& sentence)
{
    Victim victim(reader, false);
    EXPECT_EQ(victim.read(input), Outcome::Refused);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, kind);
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(), sentence);
    victim.expectUsable(reader.isXml() ? QByteArray(documentXml) : plainForm());
}

} // namespace

TEST(HostileDocument, TheOriginalIsTheSameInEveryForm)
{
    PelLu300RouterInterfaceXml document;
    ASSERT_TRUE(document.SetXmlString(QString::fromUtf8(documentXml), true));
    EXPECT_TRUE(document == original());
    QByteArray form = plainForm();
    ASSERT_TRUE(document.SetBinaryRepresentation(form));
    EXPECT_TRUE(document == original());
    EXPECT_EQ(document.GetBinaryRepresentationAsQByteArray(), form);
}

// --- cut off --------------------------------------------------------------------------------------

namespace {

// Expects a place at the end of the input: in its last line, and below the root if that has begun.
void expectPlacedAtTheEnd(const QByteArray& input)
{
    const Place& place = IMKObject::GetLastFailure().place;
    EXPECT_EQ(place.line, input.count('\n') + 1);
    EXPECT_EQ(place.path.startsWith(text(rootPath)), input.contains("<PelLu300RouterInterfaceXml>"));
}

void expectCutOffXmlIsRefused(Reader& reader, bool validate = false)
{
    const QByteArray whole(documentXml);
    Victim victim(reader, validate);
    for (int size = 0; size < static_cast<int>(whole.size()) - 1; ++size) {
        SCOPED_TRACE(size);
        const QByteArray part = whole.left(size);
        EXPECT_EQ(victim.read(part), Outcome::Refused);
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
        expectPlacedAtTheEnd(part);
        victim.expectUsable(whole);
    }
    // A document without the line break behind the root element is complete.
    EXPECT_EQ(victim.read(whole.left(static_cast<int>(whole.size()) - 1)), Outcome::Read);
    EXPECT_TRUE(victim.document() == original());
}

} // namespace

TEST(HostileDocument, AnXmlStringCutOffAnywhereIsNotWellFormed)
{
    XmlString reader;
    expectCutOffXmlIsRefused(reader);
}

TEST(HostileDocument, AnXmlFileCutOffAnywhereIsNotWellFormed)
{
    XmlFile reader;
    expectCutOffXmlIsRefused(reader);
}

// Under validation a record may refuse an incomplete element first, but the reason is still the end of the
// document.
TEST(HostileDocument, XmlCutOffAnywhereIsNotWellFormedUnderValidationToo)
{
    XmlString reader;
    expectCutOffXmlIsRefused(reader, true);
}

TEST(HostileDocument, ABinaryFormCutOffAnywhereIsRefusedAndLeavesTheRecordUnchanged)
{
    Bytes fromBytes;
    Stream fromStream;
    BinaryFile fromFile;
    for (Reader* reader : {static_cast<Reader*>(&fromBytes), static_cast<Reader*>(&fromStream),
                           static_cast<Reader*>(&fromFile)}) {
        for (const QByteArray& whole : {plainForm(), packedForm()}) {
            for (const bool validate : {false, true}) {
                Victim victim(*reader, validate);
                victim.expectUsable(whole);
                for (int size = 0; size < static_cast<int>(whole.size()); ++size) {
                    SCOPED_TRACE(size);
                    EXPECT_EQ(victim.read(whole.left(size)), Outcome::Refused);
                    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotABinaryForm);
                    EXPECT_EQ(IMKObject::GetLastFailure().text,
                              QStringLiteral("The binary form is cut off."));
                    EXPECT_EQ(IMKObject::GetLastFailure().place.offset, size);
                    EXPECT_TRUE(victim.document() == original());
                }
                victim.expectUsable(whole);
            }
        }
    }
}

// --- damaged --------------------------------------------------------------------------------------

namespace {

// A record refuses values from XML only under validation.
template <class Masks>
void expectXmlOutcomes(Reader& reader, const Masks& lenientMasks)
{
    const Outcomes lenient = readDamaged(reader, documentXml, lenientMasks, false);
    EXPECT_GT(lenient.read, 0);
    EXPECT_GT(lenient.refused, 0);
    EXPECT_EQ(lenient.thrown, 0);
    const Outcomes strict = readDamaged(reader, documentXml, twoMasks, true);
    EXPECT_GT(strict.read, 0);
    EXPECT_GT(strict.refused, 0);
    EXPECT_GT(strict.thrown, 0);
}

template <class Masks>
void expectEveryOutcome(Reader& reader, const Masks& masks, bool validate)
{
    const Outcomes outcomes = readDamaged(reader, plainForm(), masks, validate);
    EXPECT_GT(outcomes.read, 0);
    EXPECT_GT(outcomes.refused, 0);
    EXPECT_GT(outcomes.thrown, 0);
}

} // namespace

TEST(HostileDocument, AnXmlStringWithAnyByteChangedIsReadOrRefusedOrThrows)
{
    XmlString reader;
    expectXmlOutcomes(reader, allMasks);
}

TEST(HostileDocument, AnXmlFileWithAnyByteChangedIsReadOrRefusedOrThrows)
{
    XmlFile reader;
    expectXmlOutcomes(reader, twoMasks);
}

TEST(HostileDocument, ABinaryFormWithAnyByteChangedIsReadOrRefusedOrThrows)
{
    Bytes fromBytes;
    Stream fromStream;
    BinaryFile fromFile;
    for (const bool validate : {false, true}) {
        expectEveryOutcome(fromBytes, allMasks, validate);
        expectEveryOutcome(fromStream, twoMasks, validate);
        expectEveryOutcome(fromFile, twoMasks, validate);
    }
}

// Thanks to zlib's checksum, no damaged form is read as another document.
TEST(HostileDocument, ACompressedFormWithAnyByteChangedIsTheSameDocumentOrRefused)
{
    const QuietQt quiet;
    Bytes fromBytes;
    Stream fromStream;
    BinaryFile fromFile;
    for (Reader* reader : {static_cast<Reader*>(&fromBytes), static_cast<Reader*>(&fromStream),
                           static_cast<Reader*>(&fromFile)}) {
        const QByteArray whole = packedForm();
        Victim victim(*reader, true);
        int refused = 0;
        for (int at = 0; at < static_cast<int>(whole.size()); ++at) {
            for (const int mask : allMasks) {
                SCOPED_TRACE(::testing::Message() << "byte " << at << " changed by " << mask);
                QByteArray damaged = whole;
                damaged[at] = static_cast<char>(damaged.at(at) ^ mask);
                const Outcome outcome = victim.read(damaged);
                EXPECT_NE(outcome, Outcome::Thrown);
                if (outcome == Outcome::Refused)
                    ++refused;
                else
                    EXPECT_TRUE(victim.document() == original());
                victim.expectUsable(whole);
            }
        }
        // Nearly every changed bit must be noticed.
        EXPECT_GT(refused, 3 * static_cast<int>(whole.size()));
    }
}

// --- entities -------------------------------------------------------------------------------------

TEST(HostileXml, ABillionLaughsAreRefusedAtTheirDeclaration)
{
    QByteArray xml = "<!DOCTYPE x [\n<!ENTITY e0 'ha'>\n";
    for (int i = 1; i < 30; ++i)
        xml += "<!ENTITY e" + QByteArray::number(i) + " '"
               + QByteArray("&e" + QByteArray::number(i - 1) + ';').repeated(10) + "'>\n";
    xml += "]>" + inMessage(QByteArray("<Type>&e29;</Type>"));
    XmlString fromString;
    XmlFile fromFile;
    for (Reader* reader : {static_cast<Reader*>(&fromString), static_cast<Reader*>(&fromFile)}) {
        Victim victim(*reader, false);
        EXPECT_EQ(victim.read(xml), Outcome::Refused);
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::DoctypeRefused);
        EXPECT_EQ(IMKObject::GetLastFailure().text,
                  QStringLiteral("A document type declaration is not accepted."));
        EXPECT_TRUE(IMKObject::GetLastFailure().place.path.isEmpty());
        victim.expectUsable(documentXml);
    }
}

TEST(HostileXml, ALongEntityUsedOftenIsRefusedAtItsDeclaration)
{
    const QByteArray xml = "<!DOCTYPE x [<!ENTITY e '" + QByteArray(200000, 'x') + "'>]>"
                           + inMessage("<Type>" + QByteArray("&e;").repeated(200000) + "</Type>");
    XmlFile reader;
    Victim victim(reader, false);
    EXPECT_EQ(victim.read(xml), Outcome::Refused);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::DoctypeRefused);
    victim.expectUsable(documentXml);
}

TEST(HostileXml, ALongEntityUsedInAnAttributeIsRefusedAtItsDeclaration)
{
    const QByteArray xml = "<!DOCTYPE x [<!ENTITY e '" + QByteArray(200000, 'x') + "'>]>"
                           + "<PelLu300RouterInterfaceXml a='" + QByteArray("&e;").repeated(200000) + "'/>";
    XmlString reader;
    Victim victim(reader, false);
    EXPECT_EQ(victim.read(xml), Outcome::Refused);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::DoctypeRefused);
    victim.expectUsable(documentXml);
}

// A reader would expand these entities inside the declaration already.
TEST(HostileXml, ParameterEntitiesOfParameterEntitiesAreRefused)
{
    QByteArray xml = "<!DOCTYPE x [<!ENTITY % p0 '<!ELEMENT y ANY>'>";
    for (int i = 1; i < 20; ++i)
        xml += "<!ENTITY % p" + QByteArray::number(i) + " '"
               + QByteArray("&#37;p" + QByteArray::number(i - 1) + ';').repeated(10) + "'>";
    xml += "%p19;]>" + inMessage(QByteArray());
    XmlString reader;
    Victim victim(reader, false);
    EXPECT_EQ(victim.read(xml), Outcome::Refused);
    victim.expectUsable(documentXml);
}

TEST(HostileXml, AnExternalEntityIsNotOpened)
{
    QTemporaryFile secret;
    ASSERT_TRUE(secret.open());
    secret.write("Reply");
    secret.flush();
    const QByteArray xml = "<!DOCTYPE x [<!ENTITY e SYSTEM 'file://" + secret.fileName().toUtf8() + "'>]>"
                           + inMessage(QByteArray("<Type>&e;</Type>"));
    XmlString reader;
    Victim victim(reader, false);
    EXPECT_EQ(victim.read(xml), Outcome::Refused);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::DoctypeRefused);
    EXPECT_FALSE(victim.document().GetPelLu300RouterMessage().IsTypeSet());
    victim.expectUsable(documentXml);
}

TEST(HostileXml, AnEntityThatIsNotDeclaredIsNotWellFormed)
{
    XmlString reader;
    Victim victim(reader, false);
    EXPECT_EQ(victim.read(inMessage(QByteArray("<Type>&e;</Type>"))), Outcome::Refused);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    EXPECT_EQ(IMKObject::GetLastFailure().place.path, text(messagePath) + QStringLiteral("/Type"));
    victim.expectUsable(documentXml);
}

// --- much of the same -----------------------------------------------------------------------------

TEST(HostileXml, AMillionNestedTagsAreRefusedAtTheFirstOneTooDeep)
{
    const QByteArray before = "<PelLu300RouterInterfaceXml><PelLu300RouterMessage>\n";
    const QByteArray xml = before + QByteArray("<a>").repeated(1000000);
    QString path = text(messagePath);
    // The root and the message are the first two of 64 levels. The path also has the element that is too
    // deep.
    for (int i = 0; i < 63; ++i)
        path += QStringLiteral("/a");
    const QString sentence =
        QStringLiteral("2:189: Elements are nested deeper than the limit of 64. (in %1)").arg(path);
    XmlString fromString;
    expectRefused(fromString, xml, Failure::NestedTooDeep, sentence);
    PelLu300RouterInterfaceXml document;
    EXPECT_FALSE(document.SetXmlString(QString::fromUtf8(xml), false));
    EXPECT_EQ(IMKObject::GetLastFailure().place.line, 2);
    EXPECT_EQ(IMKObject::GetLastFailure().place.column, 189);
}

TEST(HostileXml, AMillionNestedTagsInAFileAreRefused)
{
    XmlFile reader;
    Victim victim(reader, true);
    EXPECT_EQ(victim.read(QByteArray("<PelLu300RouterInterfaceXml>") + QByteArray("<a>").repeated(1000000)),
              Outcome::Refused);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NestedTooDeep);
    victim.expectUsable(documentXml);
}

TEST(HostileXml, AMillionCommentsAreSkipped)
{
    XmlString reader;
    Victim victim(reader, true);
    QByteArray xml(documentXml);
    xml.replace("<MessageID>", QByteArray("<!---->").repeated(1000000) + "<MessageID>");
    EXPECT_EQ(victim.read(xml), Outcome::Read);
    victim.expectUsable(documentXml);
}

TEST(HostileXml, AMillionProcessingInstructionsAreSkipped)
{
    XmlString reader;
    Victim victim(reader, true);
    QByteArray xml(documentXml);
    xml.replace("<MessageID>", QByteArray("<?p?>").repeated(1000000) + "<MessageID>");
    EXPECT_EQ(victim.read(xml), Outcome::Read);
    EXPECT_TRUE(victim.document() == original());
}

TEST(HostileXml, CommentsInsideATextAreSkipped)
{
    PelLu300RouterInterfaceXml document;
    QByteArray xml(documentXml);
    xml.replace("MasterPresent", "Master" + QByteArray("<!---->").repeated(200000) + "Present");
    ASSERT_TRUE(document.SetXmlString(QString::fromUtf8(xml), true));
    EXPECT_TRUE(document == original());
}

TEST(HostileXml, ATextOfTenMegabytesIsReadWhole)
{
    constexpr int size = 10 << 20;
    XmlFile reader;
    Victim victim(reader, true);
    QByteArray xml(documentXml);
    xml.replace("a&amp;b", QByteArray(size, 'x'));
    ASSERT_EQ(victim.read(xml), Outcome::Read);
    Fragment fragment(victim.document().GetPelLu300RouterMessage().GetFragment().at(4));
    EXPECT_EQ(fragment.GetPelVtConnectServer().GetAddress(), QString(size, QLatin1Char('x')));
    victim.expectUsable(documentXml);
}

TEST(HostileXml, ANumberOfTenMegabytesIsNoNumber)
{
    XmlString reader;
    Victim victim(reader, true);
    QByteArray xml(documentXml);
    xml.replace("98.50", QByteArray(10 << 20, '9'));
    xml.replace("5000", QByteArray(10 << 20, '9'));
    ASSERT_EQ(victim.read(xml), Outcome::Read);
    EXPECT_EQ(
        victim.document().GetPelLu300RouterMessage().GetFragment().at(3).GetOstraInterfacePort().GetPort(),
        0U);
    victim.expectUsable(documentXml);
}

TEST(HostileXml, AnAttributeOfTenMegabytesIsSkipped)
{
    XmlString reader;
    Victim victim(reader, true);
    QByteArray xml(documentXml);
    xml.replace("<Type>", "<Type a='" + QByteArray(10 << 20, 'x') + "'>");
    EXPECT_EQ(victim.read(xml), Outcome::Read);
    EXPECT_TRUE(victim.document() == original());
}

// Some versions of Qt limit the length of names.
TEST(HostileXml, ANameOfTenMegabytesIsSkippedOrNotWellFormed)
{
    XmlString reader;
    Victim victim(reader, true);
    QByteArray xml(documentXml);
    xml.replace("<MessageID>", '<' + QByteArray(10 << 20, 'x') + "/><MessageID>");
    if (victim.read(xml) == Outcome::Read)
        EXPECT_TRUE(victim.document() == original());
    else
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    victim.expectUsable(documentXml);
}

// --- compressed -----------------------------------------------------------------------------------

namespace {

QByteArray packed(const QByteArray& plain) { return sized(qCompress(plain, 9)); }

} // namespace

TEST(HostileCompression, ABombIsRefusedAtThePieceThatExceedsTheLimit)
{
    const QByteArray piece = packed(QByteArray(65536, '\0'));
    // 4096 pieces make the 256 MiB that are admitted.
    const QByteArray bomb = compressedForm(piece.repeated(20000));
    ASSERT_LT(bomb.size(), 2000000);
    Bytes reader;
    expectRefused(reader, bomb, Failure::InflatedTooLarge,
                  QStringLiteral("offset %1: The inflated form is larger than the limit of 268435456 bytes.")
                      .arg(8 + 4096 * piece.size()));
}

TEST(HostileCompression, ABombOfManySmallPiecesIsRefusedAtThePieceThatExceedsTheLimit)
{
    const LimitsInScope inScope(limitsWith([](Limits& limits) { limits.inflatedSize = 100000; }));
    const QByteArray piece = packed(QByteArray(1, '\0'));
    Stream reader;
    expectRefused(reader, compressedForm(piece.repeated(200000)), Failure::InflatedTooLarge,
                  QStringLiteral("offset %1: The inflated form is larger than the limit of 100000 bytes.")
                      .arg(8 + 100000 * piece.size()));
}

TEST(HostileCompression, APieceThatClaimsTwoGigabytesIsDamaged)
{
    Bytes reader;
    const QString sentence = QStringLiteral("offset 8: The compressed form is damaged.");
    const QByteArray stream = qCompress(QByteArray(100, 'x'), 9).mid(4);
    // The claimed inflated size: the largest, negative ones, zero, and one more than a piece may have.
    for (const quint32 claimed : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU, 0U, 65537U})
        expectRefused(reader, compressedForm(sized(word(claimed) + stream)), Failure::DamagedCompression,
                      sentence);
    // The claimed length of the piece.
    for (const quint32 claimed : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU, 0U, 4U})
        expectRefused(reader, compressedForm(word(claimed) + word(100) + stream), Failure::DamagedCompression,
                      sentence);
}

TEST(HostileCompression, APieceThatHoldsMoreOrLessThanItClaimsIsDamaged)
{
    const QuietQt quiet;
    Bytes reader;
    const QString sentence = QStringLiteral("offset 8: The compressed form is damaged.");
    const QByteArray stream = qCompress(QByteArray(100, 'x'), 9).mid(4);
    const QByteArray bomb = qCompress(QByteArray(10 << 20, 'x'), 9).mid(4);
    expectRefused(reader, compressedForm(sized(word(99) + stream)), Failure::DamagedCompression, sentence);
    expectRefused(reader, compressedForm(sized(word(101) + stream)), Failure::DamagedCompression, sentence);
    expectRefused(reader, compressedForm(sized(word(100) + bomb)), Failure::DamagedCompression, sentence);
}

TEST(HostileCompression, TheSecondOfTwoPiecesIsNamedWhenItIsTheDamagedOne)
{
    const QByteArray first = packed(plainForm().left(100));
    Bytes reader;
    expectRefused(reader, compressedForm(first + word(5)), Failure::DamagedCompression,
                  QStringLiteral("offset %1: The compressed form is damaged.").arg(8 + first.size()));
    expectRefused(reader, compressedForm(first), Failure::NotABinaryForm,
                  QStringLiteral("offset 100: The binary form is cut off."));
}

TEST(HostileCompression, AFormInManySmallPiecesIsReadAsInOne)
{
    QByteArray pieces;
    for (const char byte : plainForm())
        pieces += packed(QByteArray(1, byte));
    Stream reader;
    Victim victim(reader, true);
    EXPECT_EQ(victim.read(compressedForm(pieces)), Outcome::Read);
    EXPECT_TRUE(victim.document() == original());
}

TEST(HostileCompression, WithoutAnyPieceIsCutOff)
{
    Bytes reader;
    expectRefused(reader, compressedForm(QByteArray()), Failure::NotABinaryForm,
                  QStringLiteral("offset 0: The binary form is cut off."));
}

// --- lists ----------------------------------------------------------------------------------------

namespace {

// A document whose list contains so many items of length 0 and announces so many.
QByteArray listOfEmptyItems(quint32 count, quint32 announced)
{
    const QByteArray list = word(announced) + QByteArray(static_cast<int>(4 * count), '\0');
    return word(documentId) + sized(entry(messageTag, entry(fragmentTag, list)));
}

} // namespace

TEST(HostileList, MoreItemsThanAdmittedAreRefusedWithTheirPlace)
{
    const LimitsInScope inScope(limitsWith([](Limits& limits) { limits.listItems = 1000; }));
    Bytes reader;
    // In front of the 1001st item are the id and two tags, each with a length, the number of items, and 1000
    // lengths.
    expectRefused(reader, listOfEmptyItems(100000, 100000), Failure::TooManyItems,
                  QStringLiteral("offset 4028: A list holds more items than the limit of 1000. (in "
                                 "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[1001])"));
}

// There are more items than any container could hold.
TEST(HostileList, ItemsThatNoContainerHoldsAreRefusedAsTooMany)
{
    const LimitsInScope inScope(limitsWith([](Limits& limits) { limits.listItems = 1000; }));
    QByteArray pieces;
    const QByteArray plain = listOfEmptyItems(0, 60000000);
    // The length announces 240 MB, and as many zeros follow.
    QByteArray head = plain;
    head.replace(4, 4, word(20 + 240000000));
    head.replace(12, 4, word(12 + 240000000));
    head.replace(20, 4, word(4 + 240000000));
    pieces += packed(head);
    const QByteArray zeros = packed(QByteArray(60000, '\0'));
    pieces += zeros.repeated(4000);
    Bytes reader;
    Victim victim(reader, false);
    EXPECT_EQ(victim.read(compressedForm(pieces)), Outcome::Refused);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::TooManyItems);
    victim.expectUsable(plainForm());
}

// --- time that must not grow with the square of the size ------------------------------------------

// These tests are the last ones, because they would not end if the time did.

TEST(HostileXml, AHundredThousandNamespacesInUseAreSkippedOrRefused)
{
    QByteArray declarations;
    for (int i = 0; i < 100000; ++i)
        declarations += " xmlns:a" + QByteArray::number(i) + "='u'";
    XmlString reader;
    Victim victim(reader, false);
    QByteArray xml(documentXml);
    xml.replace("<MessageID>",
                "<x" + declarations + '>' + QByteArray("<a0:y/>").repeated(1000000) + "</x><MessageID>");
    if (victim.read(xml) == Outcome::Read)
        EXPECT_TRUE(victim.document() == original());
    else
        EXPECT_NE(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    victim.expectUsable(documentXml);
}

TEST(HostileXml, AMillionDeclaredAttributesAreRefusedAtTheirDeclaration)
{
    QByteArray xml = "<!DOCTYPE x [<!ATTLIST x";
    for (int i = 0; i < 1000000; ++i)
        xml += " a" + QByteArray::number(i) + " CDATA #IMPLIED";
    xml += ">]>" + QByteArray(documentXml).mid(39);
    XmlString reader;
    Victim victim(reader, false);
    EXPECT_EQ(victim.read(xml), Outcome::Refused);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::DoctypeRefused);
    victim.expectUsable(documentXml);
}

TEST(HostileXml, AMillionAttributesOfOneElementAreSkippedOrRefused)
{
    QByteArray attributes;
    for (int i = 0; i < 1000000; ++i)
        attributes += " a" + QByteArray::number(i) + "=''";
    XmlString reader;
    Victim victim(reader, false);
    QByteArray xml(documentXml);
    xml.replace("<MessageID>", "<MessageID" + attributes + '>');
    if (victim.read(xml) == Outcome::Read)
        EXPECT_TRUE(victim.document() == original());
    else
        EXPECT_NE(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    victim.expectUsable(documentXml);
}
