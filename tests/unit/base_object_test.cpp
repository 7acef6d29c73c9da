// SPDX-License-Identifier: MIT
// The base object: what it holds, the services that it gives to derived classes, its walk over XML
// elements, and its operations on whole documents.

#include "TestSupport.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QIODevice>
#include <QtCore/QTemporaryDir>

#include "modelkit/Version.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;
using MODELKIT::IMKObject;
using MODELKIT::Logger;
using MODELKIT::ObjectTypes;

// --- objects for the tests --------------------------------------------------------------------

// A small object of another kind than the records: one text, written and read by the four operations
// on which the base object builds. It notes which of them are called.
class Note : public IMKObject
{
public:
    Note() { SetObjectName(QStringLiteral("Note")); }
    explicit Note(ObjectTypes type) : IMKObject(type) { SetObjectName(QStringLiteral("Note")); }

    using IMKObject::GetTextValue;
    using IMKObject::m_typeCode;
    using IMKObject::SetObjectName;

    bool HasData() const override { return true; }
    void Reset() override
    {
        calls.emplace_back("Reset");
        text.clear();
    }
    void Check(bool flag) const override { calls.emplace_back(flag ? "Check(true)" : "Check(false)"); }
    void Check() const override
    {
        calls.emplace_back("Check()");
        if (refuses)
            throw IncompleteDefinitionException(QStringLiteral("refused"));
    }
    void GetXml(QXmlStreamWriter& writer) const override
    {
        calls.emplace_back("GetXml");
        writer.writeTextElement(GetObjectName(), text);
    }
    void ProcessXml(QXmlStreamReader& reader) override
    {
        calls.emplace_back("ProcessXml");
        text = GetTextValue(reader);
    }
    bool GetBinary(QDataStream& stream, int id, bool writeId) const override
    {
        calls.emplace_back("GetBinary");
        const QByteArray utf8 = text.toUtf8();
        if (writeId)
            stream << id;
        stream << utf8;
        return true;
    }
    void SetBinary(QDataStream& stream, int length) override
    {
        calls.emplace_back("SetBinary");
        QByteArray utf8(length, ' ');
        stream.readRawData(utf8.data(), length);
        text = QString::fromUtf8(utf8);
    }

    QString text;
    bool refuses = false;
    mutable std::vector<std::string> calls;

protected:
    void ProcessXmlStartElement(QXmlStreamReader&) override {}
};

using Calls = std::vector<std::string>;

// Notes the child elements that the base object's walk hands to it and treats each as it is told.
class Walker : public IMKObject
{
public:
    enum Treatment
    {
        ReadText,
        LeaveOnStart,
        SkipToEnd
    };

    explicit Walker(Treatment treatment) : m_treatment(treatment) {}

    bool HasData() const override { return true; }
    void Reset() override {}
    void Check(bool) const override {}
    void Check() const override {}
    void GetXml(QXmlStreamWriter&) const override {}
    bool GetBinary(QDataStream&, int, bool) const override { return true; }
    void SetBinary(QDataStream&, int) override {}

    QStringList visited;

protected:
    void ProcessXmlStartElement(QXmlStreamReader& reader) override
    {
        QString entry = reader.name().toString();
        if (m_treatment == ReadText)
            entry += QLatin1Char('=') + GetTextValue(reader);
        else if (m_treatment == SkipToEnd)
            reader.skipCurrentElement();
        visited += entry;
    }

private:
    Treatment m_treatment;
};

template <class R>
Opened<R> renamed(const char* name)
{
    Opened<R> record;
    record.SetObjectName(QString::fromUtf8(name));
    return record;
}

// --- what an object holds ---------------------------------------------------------------------

TEST(BaseObjectState, ANewObjectHasNoKindNoLoggerAndNoValidation)
{
    Note note;
    EXPECT_EQ(note.GetObjectType(), ObjectTypes::Undefined);
    EXPECT_EQ(note.m_typeCode, 0);
    EXPECT_FALSE(note.GetValidate());
    EXPECT_EQ(note.GetLogger(), nullptr);
}

TEST(BaseObjectState, ANewObjectHasAnEmptyName)
{
    EXPECT_TRUE(Walker(Walker::ReadText).GetObjectName().isEmpty());
}

TEST(BaseObjectState, TheKindGivenAtConstructionIsAlsoTheTypeCode)
{
    Note settings(ObjectTypes::Settings);
    EXPECT_EQ(settings.GetObjectType(), ObjectTypes::Settings);
    EXPECT_EQ(settings.m_typeCode, 3);
    Note document(ObjectTypes::Document);
    EXPECT_EQ(document.GetObjectType(), ObjectTypes::Document);
    EXPECT_EQ(document.m_typeCode, 1);
    EXPECT_FALSE(document.GetValidate());
    EXPECT_EQ(document.GetLogger(), nullptr);
}

TEST(BaseObjectState, SetObjectTypeSetsKindAndTypeCode)
{
    Note note;
    note.SetObjectType(ObjectTypes::Record);
    EXPECT_EQ(note.GetObjectType(), ObjectTypes::Record);
    EXPECT_EQ(note.m_typeCode, 2);
}

TEST(BaseObjectState, TheNameIsHandedOutByReference)
{
    Note note;
    const QString& name = note.GetObjectName();
    note.SetObjectName(QStringLiteral("Memo"));
    EXPECT_EQ(name, QStringLiteral("Memo"));
}

TEST(BaseObjectState, ValidationIsSwitchedOnConstObjects)
{
    const Note note;
    note.SetValidate(true);
    EXPECT_TRUE(note.GetValidate());
    note.SetValidate(false);
    EXPECT_FALSE(note.GetValidate());
}

TEST(BaseObjectState, TheLoggerIsSharedWithConstObjectsUntilReset)
{
    const Note note;
    const auto logger = std::make_shared<Logger>();
    note.SetLogger(logger);
    EXPECT_EQ(note.GetLogger(), logger);
    EXPECT_EQ(logger.use_count(), 2);
    note.ResetLogger();
    EXPECT_EQ(note.GetLogger(), nullptr);
    EXPECT_EQ(logger.use_count(), 1);
}

TEST(BaseObjectState, SetLoggerReplacesAndTakesAnEmptyPointer)
{
    const Note note;
    const auto first = std::make_shared<Logger>();
    const auto second = std::make_shared<Logger>();
    note.SetLogger(first);
    note.SetLogger(second);
    EXPECT_EQ(note.GetLogger(), second);
    EXPECT_EQ(first.use_count(), 1);
    note.SetLogger(nullptr);
    EXPECT_EQ(note.GetLogger(), nullptr);
    EXPECT_EQ(second.use_count(), 1);
}

TEST(BaseObjectState, ResetLoggerWithoutALoggerDoesNothing)
{
    const Note note;
    note.ResetLogger();
    EXPECT_EQ(note.GetLogger(), nullptr);
}

TEST(BaseObjectState, AnObjectLetsGoOfItsLoggerWhenItDies)
{
    const auto logger = std::make_shared<Logger>();
    {
        const Note note;
        note.SetLogger(logger);
    }
    EXPECT_EQ(logger.use_count(), 1);
}

TEST(BaseObjectState, TheVersionIsThatOfTheLibrary)
{
    const Note note;
    const QString version = note.GetVersion();
    EXPECT_EQ(version, QStringLiteral(MODELKIT_VERSION));
    const QStringList numbers = version.split(QLatin1Char('.'));
    ASSERT_EQ(numbers.size(), 3);
    for (const QString& number : numbers) {
        bool isNumber = false;
        number.toUInt(&isNumber);
        EXPECT_TRUE(isNumber) << number.toStdString();
    }
    const DF_Params record;
    EXPECT_EQ(record.GetVersion(), version);
    EXPECT_EQ(&note.GetVersion(), &note.GetVersion());
}

// --- what a record makes of it ----------------------------------------------------------------

// One filled record of each class with its written forms: the element as the whole-document operations
// indent it, and the whole-object form in big-endian order.
template <class R>
struct Sample;

template <>
struct Sample<OstraInterfacePort>
{
    static constexpr const char* name = "OstraInterfacePort";
    static constexpr long long typeCode = 2130783928LL;
    static OstraInterfacePort make()
    {
        OstraInterfacePort record;
        record.SetPort(5000);
        return record;
    }
    static constexpr const char* xml = "<OstraInterfacePort>\n"
                                       "  <Port>5000</Port>\n"
                                       "</OstraInterfacePort>";
    static constexpr const char* binary = "7F012EB8 00000010 1F980517 00000008 0000000000001388";
};

template <>
struct Sample<RouterVtServerPort>
{
    static constexpr const char* name = "RouterVtServerPort";
    static constexpr long long typeCode = 617063688LL;
    static RouterVtServerPort make()
    {
        RouterVtServerPort record;
        record.SetPort(65535);
        return record;
    }
    static constexpr const char* xml = "<RouterVtServerPort>\n"
                                       "  <Port>65535</Port>\n"
                                       "</RouterVtServerPort>";
    static constexpr const char* binary = "24C7A508 00000010 1F980517 00000008 000000000000FFFF";
};

template <>
struct Sample<PelVtConnectServer>
{
    static constexpr const char* name = "PelVtConnectServer";
    static constexpr long long typeCode = 140772172LL;
    static PelVtConnectServer make()
    {
        PelVtConnectServer record;
        record.SetAddress(QStringLiteral("z\u00FCrich-1"));
        record.SetPort(7);
        return record;
    }
    static constexpr const char* xml = "<PelVtConnectServer>\n"
                                       "  <Address>z\xC3\xBCrich-1</Address>\n"
                                       "  <Port>7</Port>\n"
                                       "</PelVtConnectServer>";
    static constexpr const char* binary = "0864034C 00000025"
                                          "2AC271EC 0000000D 00000009 7AC3BC726963682D31"
                                          "1F980517 00000008 0000000000000007";
};

template <>
struct Sample<MastershipState>
{
    static constexpr const char* name = "MastershipState";
    static constexpr long long typeCode = -687910292LL;
    static MastershipState make()
    {
        MastershipState record;
        record.SetState(MastershipState::MasterPresent);
        record.SetMasterClientID(QStringLiteral("client 1"));
        return record;
    }
    static constexpr const char* xml = "<MastershipState>\n"
                                       "  <State>MasterPresent</State>\n"
                                       "  <MasterClientID>client 1</MasterClientID>\n"
                                       "</MastershipState>";
    static constexpr const char* binary = "D6FF526C 0000002D"
                                          "4264F498 00000011 0000000D 4D617374657250726573656E74"
                                          "0BCD2CF7 0000000C 00000008 636C69656E742031";
};

template <>
struct Sample<AcquireMastership>
{
    static constexpr const char* name = "AcquireMastership";
    static constexpr long long typeCode = 444824266LL;
    static AcquireMastership make()
    {
        AcquireMastership record;
        record.SetSuccess(true);
        return record;
    }
    static constexpr const char* xml = "<AcquireMastership>\n"
                                       "  <Success>true</Success>\n"
                                       "</AcquireMastership>";
    static constexpr const char* binary = "1A837ACA 00000009 BF8A59C6 00000001 01";
};

template <>
struct Sample<ReleaseMastership>
{
    static constexpr const char* name = "ReleaseMastership";
    static constexpr long long typeCode = 1597604052LL;
    static ReleaseMastership make()
    {
        ReleaseMastership record;
        record.SetSuccess(false);
        return record;
    }
    static constexpr const char* xml = "<ReleaseMastership>\n"
                                       "  <Success>false</Success>\n"
                                       "</ReleaseMastership>";
    static constexpr const char* binary = "5F3980D4 00000009 BF8A59C6 00000001 00";
};

template <>
struct Sample<DF_Params>
{
    static constexpr const char* name = "DF_Params";
    static constexpr long long typeCode = -236055652LL;
    static DF_Params make()
    {
        DF_Params record;
        record.SetFrequency(98500000.25);
        record.SetPanoramaSpan(-1.5);
        return record;
    }
    static constexpr const char* xml = "<DF_Params>\n"
                                       "  <Frequency>98500000.25</Frequency>\n"
                                       "  <PanoramaSpan>-1.50</PanoramaSpan>\n"
                                       "</DF_Params>";
    static constexpr const char* binary = "F1EE139C 00000028"
                                          "A97DB5BE 0000000F 0000000B 39383530303030302E3235"
                                          "7029D96C 00000009 00000005 2D312E3530";
};

template <>
struct Sample<Fragment>
{
    static constexpr const char* name = "Fragment";
    static constexpr long long typeCode = -767521452LL;
    static Fragment make()
    {
        Fragment record;
        record.SetAcquireMastership(Sample<AcquireMastership>::make());
        return record;
    }
    static constexpr const char* xml = "<Fragment>\n"
                                       "  <AcquireMastership>\n"
                                       "    <Success>true</Success>\n"
                                       "  </AcquireMastership>\n"
                                       "</Fragment>";
    static constexpr const char* binary = "D2408D54 00000011 21BDA6E2 00000009 BF8A59C6 00000001 01";
};

template <>
struct Sample<PelLu300RouterMessage>
{
    static constexpr const char* name = "PelLu300RouterMessage";
    static constexpr long long typeCode = -356475558LL;
    static PelLu300RouterMessage make()
    {
        PelLu300RouterMessage record;
        record.SetType(PelLu300RouterMessage::Request);
        record.SetMessageID(7);
        record.AppendFragment(Sample<Fragment>::make());
        Fragment port;
        port.SetOstraInterfacePort(Sample<OstraInterfacePort>::make());
        record.AppendFragment(port);
        return record;
    }
    static constexpr const char* xml = "<PelLu300RouterMessage>\n"
                                       "  <Type>Request</Type>\n"
                                       "  <MessageID>7</MessageID>\n"
                                       "  <Fragment>\n"
                                       "    <AcquireMastership>\n"
                                       "      <Success>true</Success>\n"
                                       "    </AcquireMastership>\n"
                                       "  </Fragment>\n"
                                       "  <Fragment>\n"
                                       "    <OstraInterfacePort>\n"
                                       "      <Port>5000</Port>\n"
                                       "    </OstraInterfacePort>\n"
                                       "  </Fragment>\n"
                                       "</PelLu300RouterMessage>";
    static constexpr const char* binary = "EAC09D5A 00000060"
                                          "E1D9E008 0000000B 00000007 52657175657374"
                                          "EF193DE9 00000008 0000000000000007"
                                          "61023A90 00000035 00000002"
                                          "00000011 21BDA6E2 00000009 BF8A59C6 00000001 01"
                                          "00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388";
};

template <>
struct Sample<PelLu300RouterInterfaceXml>
{
    static constexpr const char* name = "PelLu300RouterInterfaceXml";
    static constexpr long long typeCode = -2058139238LL;
    static PelLu300RouterInterfaceXml make()
    {
        PelLu300RouterInterfaceXml record;
        record.SetPelLu300RouterMessage(Sample<PelLu300RouterMessage>::make());
        return record;
    }
    static constexpr const char* xml = "<PelLu300RouterInterfaceXml>\n"
                                       "  <PelLu300RouterMessage>\n"
                                       "    <Type>Request</Type>\n"
                                       "    <MessageID>7</MessageID>\n"
                                       "    <Fragment>\n"
                                       "      <AcquireMastership>\n"
                                       "        <Success>true</Success>\n"
                                       "      </AcquireMastership>\n"
                                       "    </Fragment>\n"
                                       "    <Fragment>\n"
                                       "      <OstraInterfacePort>\n"
                                       "        <Port>5000</Port>\n"
                                       "      </OstraInterfacePort>\n"
                                       "    </Fragment>\n"
                                       "  </PelLu300RouterMessage>\n"
                                       "</PelLu300RouterInterfaceXml>";
    static constexpr const char* binary = "8553499A 00000068 9B1A7AD8 00000060"
                                          "E1D9E008 0000000B 00000007 52657175657374"
                                          "EF193DE9 00000008 0000000000000007"
                                          "61023A90 00000035 00000002"
                                          "00000011 21BDA6E2 00000009 BF8A59C6 00000001 01"
                                          "00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388";
};

template <class R>
class BaseObjectOfRecord : public ::testing::Test
{
protected:
    using Expected = Sample<R>;

    static QString name() { return QString::fromUtf8(Expected::name); }
    static QString xml() { return QString::fromUtf8(Expected::xml); }
    static QString emptyElement() { return QLatin1Char('<') + name() + QStringLiteral("/>"); }
    static QByteArray binary() { return bytes(Expected::binary); }
    // The whole-object form of a record in which nothing is set and nothing is written.
    static QByteArray emptyBinary() { return binary().left(4) + bytes("00000000"); }

    static void expectSample(const R& record)
    {
        EXPECT_TRUE(record == Expected::make());
        EXPECT_EQ(frameOf(record), binary().mid(4));
    }
};
TYPED_TEST_SUITE(BaseObjectOfRecord, AllRecords, );

TYPED_TEST(BaseObjectOfRecord, StartsWithClassNameClassIdAndNoSettings)
{
    Opened<TypeParam> record;
    EXPECT_EQ(record.GetObjectName(), TestFixture::name());
    EXPECT_EQ(record.m_typeCode, TestFixture::Expected::typeCode);
    EXPECT_EQ(record.GetObjectType(), ObjectTypes::Undefined);
    EXPECT_FALSE(record.GetValidate());
    EXPECT_EQ(record.GetLogger(), nullptr);
}

TYPED_TEST(BaseObjectOfRecord, SetObjectTypeIsIgnored)
{
    Opened<TypeParam> record;
    record.SetObjectType(ObjectTypes::Settings);
    EXPECT_EQ(record.GetObjectType(), ObjectTypes::Undefined);
    EXPECT_EQ(record.m_typeCode, TestFixture::Expected::typeCode);
}

TYPED_TEST(BaseObjectOfRecord, ACopyTakesTheKindButHasNameAndIdOfItsClass)
{
    Opened<TypeParam> source;
    source.MODELKIT::IMKObject::SetObjectType(ObjectTypes::Document);
    source.SetObjectName(QStringLiteral("Other"));
    Opened<TypeParam> copy(source);
    EXPECT_EQ(copy.GetObjectType(), ObjectTypes::Document);
    EXPECT_EQ(copy.m_typeCode, TestFixture::Expected::typeCode);
    EXPECT_EQ(copy.GetObjectName(), TestFixture::name());
}

TYPED_TEST(BaseObjectOfRecord, ACopyTakesTheValidationFlagButNotTheLogger)
{
    TypeParam source;
    source.SetValidate(true);
    source.SetLogger(std::make_shared<Logger>());
    const TypeParam copy(source);
    EXPECT_TRUE(copy.GetValidate());
    EXPECT_EQ(copy.GetLogger(), nullptr);
}

TYPED_TEST(BaseObjectOfRecord, AssignmentLeavesNameKindIdFlagAndLogger)
{
    Opened<TypeParam> source;
    source.MODELKIT::IMKObject::SetObjectType(ObjectTypes::Document);
    source.SetObjectName(QStringLiteral("Other"));
    source.SetValidate(true);
    source.SetLogger(std::make_shared<Logger>());
    Opened<TypeParam> target;
    target = source;
    EXPECT_EQ(target.GetObjectName(), TestFixture::name());
    EXPECT_EQ(target.GetObjectType(), ObjectTypes::Undefined);
    EXPECT_EQ(target.m_typeCode, TestFixture::Expected::typeCode);
    EXPECT_FALSE(target.GetValidate());
    EXPECT_EQ(target.GetLogger(), nullptr);
}

TYPED_TEST(BaseObjectOfRecord, CheckIsCheckOfFalseThroughTheVirtualTable)
{
    struct Judge : TypeParam
    {
        using TypeParam::Check;
        void Check(bool flag) const override { flags.push_back(flag); }
        mutable std::vector<bool> flags;
    };
    Judge judge;
    static_cast<const IMKObject&>(judge).Check();
    EXPECT_EQ(judge.flags, std::vector<bool>{false});
}

TYPED_TEST(BaseObjectOfRecord, TheWalkHandsChildrenToTheVirtualOperationOfADerivedClass)
{
    struct Listener : TypeParam
    {
        void ProcessXmlStartElement(QXmlStreamReader& reader) override
        {
            visited += reader.name().toString();
            TypeParam::ProcessXmlStartElement(reader);
        }
        QStringList visited;
    };
    Listener listener;
    readXml(listener, QLatin1Char('<') + TestFixture::name() + QStringLiteral("><A>1</A><B/></")
                          + TestFixture::name() + QLatin1Char('>'));
    EXPECT_EQ(listener.visited, (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
}

// --- another name -----------------------------------------------------------------------------

TYPED_TEST(BaseObjectOfRecord, TheObjectNameIsTheElementName)
{
    auto record = renamed<TypeParam>("Other");
    record.TypeParam::operator=(TestFixture::Expected::make());
    QString expected = TestFixture::xml();
    expected.replace(QLatin1Char('<') + TestFixture::name() + QLatin1Char('>'), QStringLiteral("<Other>"));
    expected.replace(QStringLiteral("</") + TestFixture::name() + QLatin1Char('>'),
                     QStringLiteral("</Other>"));
    expected.remove(QLatin1Char('\n')).replace(QStringLiteral("  "), QString());
    EXPECT_EQ(xmlOf(record), expected);
}

TYPED_TEST(BaseObjectOfRecord, TheObjectNameIsTheNameOfTheRootElement)
{
    auto record = renamed<TypeParam>("Other");
    EXPECT_TRUE(record.SetXmlString(QStringLiteral("<Other/>"), false));
    EXPECT_FALSE(record.SetXmlString(TestFixture::emptyElement(), false));
}

TYPED_TEST(BaseObjectOfRecord, TheObjectNameBeginsTheLengthError)
{
    auto record = renamed<TypeParam>("Other");
    expectThrow<BinaryParsingException>(
        [&record] { readFrame(record, bytes("FFFFFFFF")); },
        QStringLiteral(
            "Other::SetBinary(...): Length error occurred during processing of binary representation"));
}

TEST(BaseObjectName, BeginsTheMessageOfATextThatIsNull)
{
    auto server = renamed<PelVtConnectServer>("Server");
    server.SetAddress(QString());
    expectThrow<OutOfRangeException>([&server] { server.Check(); },
                                     QStringLiteral("Server: Please set Address properly."));
    server.SetValidate(true);
    expectThrow<OutOfRangeException>([&server] { server.SetAddress(QString()); },
                                     QStringLiteral("Server: Please set Address properly."));

    auto state = renamed<MastershipState>("Master");
    state.SetMasterClientID(QString());
    expectThrow<OutOfRangeException>([&state] { state.Check(); },
                                     QStringLiteral("Master: Please set MasterClientID properly."));
    state.SetValidate(true);
    expectThrow<OutOfRangeException>([&state] { state.SetMasterClientID(QString()); },
                                     QStringLiteral("Master: Please set MasterClientID properly."));
}

TEST(BaseObjectName, BeginsTheMessageOfAnEnumeratedMemberThatIsNotProper)
{
    auto state = renamed<MastershipState>("Master");
    state.SetState(static_cast<MastershipState::State>(3));
    expectThrow<OutOfRangeException>([&state] { state.Check(); },
                                     QStringLiteral("Master: Please set State properly."));
    auto message = renamed<PelLu300RouterMessage>("Message");
    expectThrow<OutOfRangeException>([&message] { message.Check(); },
                                     QStringLiteral("Message: Please set Type properly."));
}

TEST(BaseObjectName, BeginsTheMessageOfARefusedListItem)
{
    auto message = renamed<PelLu300RouterMessage>("Message");
    message.SetValidate(true);
    expectThrow<IncompleteDefinitionException>(
        [&message] { message.AppendFragment(Fragment()); },
        QStringLiteral("Message: Tried to append not completely defined or invalid item Fragment."));
}

TEST(BaseObjectName, StandsInTheMessageOfAnInvalidChoice)
{
    auto fragment = renamed<Fragment>("Piece");
    expectThrow<OutOfRangeException>(
        [&fragment] { fragment.InitChoice(static_cast<Fragment::ChoiceFragment>(-1)); },
        QStringLiteral("Invalid enum value set in 'Piece'."));
}

TEST(BaseObjectName, StandsInTheMessageOfAnEmptyBoolean)
{
    auto acquire = renamed<AcquireMastership>("Acquire");
    acquire.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&acquire] { readXml(acquire, QStringLiteral("<Acquire><Success/></Acquire>")); },
        QStringLiteral("Please set a value or a default for the boolean 'Success' in 'Acquire'."));
    auto release = renamed<ReleaseMastership>("Release");
    release.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&release] { readXml(release, QStringLiteral("<Release><Success/></Release>")); },
        QStringLiteral("Please set a value or a default for the boolean 'Success' in 'Release'."));
}

TEST(BaseObjectName, IsNotInTheMessagesThatNameTheirClass)
{
    auto state = renamed<MastershipState>("Master");
    state.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&state] { state.SetState(static_cast<MastershipState::State>(3)); },
        QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state)"));
    auto message = renamed<PelLu300RouterMessage>("Message");
    message.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&message] { message.SetType(static_cast<PelLu300RouterMessage::Type>(3)); },
        QStringLiteral("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
}

// --- invalid markers --------------------------------------------------------------------------

TEST(BaseObjectMarkers, NotANumberIsTheInvalidFloat)
{
    const Note note;
    float value = 1.0F;
    note.SetInvalid(value);
    EXPECT_TRUE(std::isnan(value));
    EXPECT_FALSE(note.IsValid(value));
    EXPECT_FALSE(note.IsValid(-std::numeric_limits<float>::quiet_NaN()));
    for (const float valid :
         {0.0F, -0.0F, 1.5F, std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest(),
          std::numeric_limits<float>::denorm_min(), std::numeric_limits<float>::infinity(),
          -std::numeric_limits<float>::infinity()})
        EXPECT_TRUE(note.IsValid(valid)) << valid;
}

TEST(BaseObjectMarkers, NotANumberIsTheInvalidDouble)
{
    const Note note;
    double value = 1.0;
    note.SetInvalid(value);
    EXPECT_TRUE(std::isnan(value));
    EXPECT_FALSE(note.IsValid(value));
    EXPECT_FALSE(note.IsValid(-std::numeric_limits<double>::quiet_NaN()));
    for (const double valid :
         {0.0, -0.0, 1.5, std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest(),
          std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()})
        EXPECT_TRUE(note.IsValid(valid)) << valid;
}

TEST(BaseObjectMarkers, TheLargestIsTheInvalidUnsignedNumber)
{
    const Note note;
    unsigned int value = 1;
    note.SetInvalid(value);
    EXPECT_EQ(value, 4294967295U);
    EXPECT_FALSE(note.IsValid(4294967295U));
    EXPECT_TRUE(note.IsValid(4294967294U));
    EXPECT_TRUE(note.IsValid(0U));
}

TEST(BaseObjectMarkers, TheSmallestIsTheInvalidSignedNumber)
{
    const Note note;
    int value = 1;
    note.SetInvalid(value);
    EXPECT_EQ(value, INT_MIN);
    EXPECT_FALSE(note.IsValid(INT_MIN));
    EXPECT_TRUE(note.IsValid(INT_MIN + 1));
    EXPECT_TRUE(note.IsValid(-1));
    EXPECT_TRUE(note.IsValid(0));
    EXPECT_TRUE(note.IsValid(INT_MAX));

    long long wide = 1;
    note.SetInvalid(wide);
    EXPECT_EQ(wide, LLONG_MIN);
    EXPECT_FALSE(note.IsValid(LLONG_MIN));
    EXPECT_TRUE(note.IsValid(LLONG_MIN + 1));
    EXPECT_TRUE(note.IsValid(-1LL));
    EXPECT_TRUE(note.IsValid(static_cast<long long>(INT_MIN)));
    EXPECT_TRUE(note.IsValid(LLONG_MAX));
}

TEST(BaseObjectMarkers, TheNullStringIsTheInvalidText)
{
    const Note note;
    QString value = QStringLiteral("text");
    note.SetInvalid(value);
    EXPECT_TRUE(value.isNull());
    EXPECT_FALSE(note.IsValid(value));
    EXPECT_TRUE(note.IsValid(empty()));
    EXPECT_TRUE(note.IsValid(QStringLiteral("text")));
}

TEST(BaseObjectMarkers, AnInvalidDateTimeIsInvalid)
{
    const Note note;
    EXPECT_FALSE(note.IsValid(QDateTime()));
    EXPECT_TRUE(note.IsValid(QDateTime(QDate(2020, 2, 29), QTime(12, 0))));
}

TEST(BaseObjectMarkers, EveryBoolIsValid)
{
    const Note note;
    EXPECT_TRUE(note.IsValid(true));
    EXPECT_TRUE(note.IsValid(false));
}

TEST(BaseObjectMarkers, DoNotLimitWhatTheMembersOfARecordAccept)
{
    OstraInterfacePort port;
    port.SetValidate(true);
    port.SetPort(4294967295U);
    EXPECT_NO_THROW(port.Check());
    EXPECT_TRUE(port.IsValidPort(4294967295U));
    EXPECT_FALSE(port.IsValid(port.GetPort()));
}

// --- skipping a binary entry ------------------------------------------------------------------

// Delivers its content in pieces of a given size at most and cannot go back.
class SequentialDevice : public QIODevice
{
public:
    SequentialDevice(QByteArray content, int pieceSize)
        : m_content(std::move(content)), m_pieceSize(pieceSize)
    {
        open(ReadOnly | Unbuffered);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        if (m_content.isEmpty())
            return -1;
        const int size = static_cast<int>(std::min<qint64>({maxSize, m_content.size(), m_pieceSize}));
        std::memcpy(data, m_content.constData(), static_cast<std::size_t>(size));
        m_content.remove(0, size);
        return size;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_content;
    int m_pieceSize;
};

TEST(BaseObjectSkip, MovesBehindThePayloadAndTellsItsLength)
{
    const Note note;
    QDataStream stream(bytes("AA BBBBBB CCDD"));
    qint8 first = 0;
    stream >> first;
    EXPECT_EQ(note.skipCurrentElement(stream, 3, 0x1F980517), 3);
    EXPECT_EQ(stream.device()->pos(), 4);
    quint16 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xCCDD);
    EXPECT_EQ(stream.status(), QDataStream::Ok);
}

TEST(BaseObjectSkip, TheTagPlaysNoPart)
{
    const Note note;
    for (const int tag : {0, -1, INT_MIN, INT_MAX}) {
        QDataStream stream(bytes("01020304"));
        EXPECT_EQ(note.skipCurrentElement(stream, 2, tag), 2) << tag;
        EXPECT_EQ(stream.device()->pos(), 2) << tag;
    }
}

TEST(BaseObjectSkip, ALengthOfZeroConsumesNothing)
{
    const Note note;
    QDataStream stream(bytes("01020304"));
    EXPECT_EQ(note.skipCurrentElement(stream, 0, 1), 0);
    EXPECT_EQ(stream.device()->pos(), 0);
    EXPECT_EQ(stream.status(), QDataStream::Ok);
}

TEST(BaseObjectSkip, ANegativeLengthConsumesNothingAndNeverMovesBack)
{
    const Note note;
    for (const int length : {-1, -3, INT_MIN}) {
        QDataStream stream(bytes("01020304"));
        stream.device()->seek(3);
        EXPECT_EQ(note.skipCurrentElement(stream, length, 1), 0) << length;
        EXPECT_EQ(stream.device()->pos(), 3) << length;
    }
}

TEST(BaseObjectSkip, ATooLongLengthConsumesWhatIsThere)
{
    const Note note;
    for (const int length : {4, 5000, INT_MAX}) {
        QDataStream stream(bytes("0102030405"));
        stream.device()->seek(2);
        EXPECT_EQ(note.skipCurrentElement(stream, length, 1), 3) << length;
        EXPECT_EQ(stream.device()->pos(), 5) << length;
        EXPECT_TRUE(stream.atEnd()) << length;
    }
}

TEST(BaseObjectSkip, AtTheEndOfTheStreamNothingIsConsumed)
{
    const Note note;
    QDataStream stream(bytes("0102"));
    stream.device()->seek(2);
    EXPECT_EQ(note.skipCurrentElement(stream, 1, 1), 0);
    EXPECT_EQ(stream.device()->pos(), 2);
}

TEST(BaseObjectSkip, AStreamWithoutDeviceGivesNothing)
{
    const Note note;
    QDataStream stream;
    EXPECT_EQ(note.skipCurrentElement(stream, 4, 1), 0);
}

TEST(BaseObjectSkip, ASequentialDeviceIsReadToTheEndOfThePayload)
{
    const Note note;
    SequentialDevice device(QByteArray(10000, 'x') + bytes("CCDD"), INT_MAX);
    QDataStream stream(&device);
    EXPECT_EQ(note.skipCurrentElement(stream, 10000, 1), 10000);
    quint16 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xCCDD);
}

TEST(BaseObjectSkip, ASequentialDeviceMayDeliverThePayloadInPieces)
{
    const Note note;
    SequentialDevice device(QByteArray(2500, 'x') + bytes("CCDD"), 1000);
    QDataStream stream(&device);
    EXPECT_EQ(note.skipCurrentElement(stream, 2500, 1), 2500);
    quint16 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xCCDD);
}

TEST(BaseObjectSkip, ASequentialDeviceThatEndsTooEarlyGivesWhatIsThere)
{
    const Note note;
    SequentialDevice device(QByteArray(1500, 'x'), INT_MAX);
    QDataStream stream(&device);
    EXPECT_EQ(note.skipCurrentElement(stream, 2000, 1), 1500);
    EXPECT_TRUE(stream.atEnd());
}

TEST(BaseObjectSkip, ASequentialDeviceIsLeftAloneByANegativeLength)
{
    const Note note;
    SequentialDevice device(bytes("CCDD"), INT_MAX);
    QDataStream stream(&device);
    EXPECT_EQ(note.skipCurrentElement(stream, -2, 1), 0);
    quint16 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xCCDD);
}

// --- the text of an element -------------------------------------------------------------------

// The text of the first "V" in the document; the reader must end on the end of that element, with
// "Next" as the next one.
QString textOfV(const QString& documentUpToNext)
{
    Note note;
    QXmlStreamReader reader(documentUpToNext + QStringLiteral("<Next/></D>"));
    while (!(reader.isStartElement() && reader.name() == QLatin1String("V")) && !reader.atEnd())
        reader.readNext();
    const QString text = note.GetTextValue(reader);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("V"));
    EXPECT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Next"));
    return text;
}

TEST(BaseObjectText, IsTheTextOfTheElementAsItStands)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V> a \u00FC\n b </V>")), QStringLiteral(" a \u00FC\n b "));
}

TEST(BaseObjectText, OfAnEmptyElementIsEmptyButNotNull)
{
    for (const char* document : {"<D><V/>", "<D><V></V>", "<D><V><!-- c --></V>", "<D><V><![CDATA[]]></V>",
                                 "<D><V><x/></V>", "<D><V><x>inner</x></V>"}) {
        const QString text = textOfV(QLatin1String(document));
        EXPECT_TRUE(text.isEmpty()) << document;
        EXPECT_FALSE(text.isNull()) << document;
    }
}

TEST(BaseObjectText, LeavesCommentsAndInstructionsOut)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V>a<!-- no -->b<?no no?>c</V>")), QStringLiteral("abc"));
}

TEST(BaseObjectText, TakesCharacterDataSections)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V>1 <![CDATA[<2> & ]]>3</V>")), QStringLiteral("1 <2> & 3"));
}

TEST(BaseObjectText, ResolvesEntitiesAndCharacterReferences)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V>&lt;&amp;&gt;&quot;&apos;&#65;&#x20AC;</V>")),
              QStringLiteral("<&>\"'A\u20AC"));
    EXPECT_EQ(textOfV(QStringLiteral("<!DOCTYPE D [<!ENTITY unit \"MHz\">]><D><V>98 &unit;</V>")),
              QStringLiteral("98 MHz"));
}

TEST(BaseObjectText, IsTakenOutsideTheChildElements)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V>a<x>no<y>no</y>no</x>b<x/>c</V>")), QStringLiteral("abc"));
}

TEST(BaseObjectText, EndsOnTheElementsOwnEndBehindChildrenOfTheSameName)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V>a<V>no<V/></V>b</V>")), QStringLiteral("ab"));
}

TEST(BaseObjectText, IsEmptyWhereTheReaderStandsOnNoStartElement)
{
    Note note;
    QXmlStreamReader reader(QStringLiteral("<D>text<V/></D>"));
    EXPECT_EQ(note.GetTextValue(reader), empty());
    EXPECT_FALSE(note.GetTextValue(reader).isNull());
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::NoToken);

    while (!reader.isCharacters())
        reader.readNext();
    EXPECT_EQ(note.GetTextValue(reader), empty());
    EXPECT_TRUE(reader.isCharacters());
    EXPECT_EQ(reader.text().toString(), QStringLiteral("text"));

    while (!reader.isEndElement())
        reader.readNext();
    EXPECT_EQ(note.GetTextValue(reader), empty());
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("V"));
}

TEST(BaseObjectText, StopsAtTheEndOfTheInput)
{
    Note note;
    QXmlStreamReader reader(QStringLiteral("<D><V>ab"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_FALSE(note.GetTextValue(reader).isNull());
    EXPECT_TRUE(reader.atEnd());
    EXPECT_TRUE(reader.hasError());
}

// --- the walk over an element -----------------------------------------------------------------

// Walks the root element of the document.
QStringList visitedIn(const char* document, Walker::Treatment treatment, QXmlStreamReader& reader)
{
    reader.addData(QString::fromUtf8(document));
    EXPECT_TRUE(reader.readNextStartElement());
    Walker walker(treatment);
    walker.ProcessXml(reader);
    return walker.visited;
}

QStringList visitedIn(const char* document, Walker::Treatment treatment)
{
    QXmlStreamReader reader;
    return visitedIn(document, treatment, reader);
}

QStringList list(const char* entries) { return QString::fromUtf8(entries).split(QLatin1Char(' ')); }

TEST(BaseObjectWalk, VisitsEachChildElementOnceInDocumentOrder)
{
    for (const Walker::Treatment treatment : {Walker::SkipToEnd, Walker::LeaveOnStart})
        EXPECT_EQ(visitedIn("<R><A/>text<B>1</B><!-- c --><A></A><?p i?><C/></R>", treatment),
                  list("A B A C"));
    EXPECT_EQ(visitedIn("<R><A/>text<B>1</B><A>2</A></R>", Walker::ReadText), list("A= B=1 A=2"));
}

TEST(BaseObjectWalk, DoesNotVisitWhatAChildHasConsumed)
{
    EXPECT_EQ(visitedIn("<R><A><x/></A><B/></R>", Walker::SkipToEnd), list("A B"));
    EXPECT_EQ(visitedIn("<R><A>1<x>no</x></A><B>2</B></R>", Walker::ReadText), list("A=1 B=2"));
}

TEST(BaseObjectWalk, VisitsWhatAChildHasLeft)
{
    EXPECT_EQ(visitedIn("<R><A><x><y/></x></A><B/></R>", Walker::LeaveOnStart), list("A x y B"));
}

TEST(BaseObjectWalk, OfAnEmptyElementVisitsNothing)
{
    for (const char* document : {"<R/>", "<R></R>", "<R> text <!-- c --></R>"})
        EXPECT_TRUE(visitedIn(document, Walker::LeaveOnStart).isEmpty()) << document;
}

TEST(BaseObjectWalk, EndsOnTheEndOfItsElementAndReadsNothingBehind)
{
    QXmlStreamReader reader(QStringLiteral("<D><R a='1'><A/></R><Next/></D>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    Walker walker(Walker::SkipToEnd);
    walker.ProcessXml(reader);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("R"));
    EXPECT_EQ(walker.visited, list("A"));
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Next"));
}

TEST(BaseObjectWalk, StartsOnAnElementOfAnyName)
{
    // The name of the start element counts, not that of the object.
    auto port = OstraInterfacePort();
    QXmlStreamReader reader(QStringLiteral("<Any><Port>5</Port></Any>"));
    ASSERT_TRUE(reader.readNextStartElement());
    port.ProcessXml(reader);
    EXPECT_EQ(port.GetPort(), 5U);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Any"));
}

TEST(BaseObjectWalk, EndsAtTheFirstEndElementOfItsNameThatNoChildHasConsumed)
{
    QXmlStreamReader reader;
    EXPECT_EQ(visitedIn("<R><A><R><x/></R><B/></A><C/></R>", Walker::LeaveOnStart, reader), list("A R x"));
    EXPECT_TRUE(reader.isEndElement());
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("B"));
}

TEST(BaseObjectWalk, GoesOnBehindAChildOfItsOwnNameThatIsConsumed)
{
    EXPECT_EQ(visitedIn("<R><R><x/></R><B/></R>", Walker::SkipToEnd), list("R B"));
    EXPECT_EQ(visitedIn("<R><R>1</R><B>2</B></R>", Walker::ReadText), list("R=1 B=2"));
}

TEST(BaseObjectWalk, EndsAtTheEndOfInputThatBreaksOff)
{
    for (const char* document : {"<R><A/><B/>", "<R><A/><B/></", "<R><A/><B/></wrong>", "<R><A/><B/><C"}) {
        QXmlStreamReader reader;
        EXPECT_EQ(visitedIn(document, Walker::SkipToEnd, reader), list("A B")) << document;
        EXPECT_TRUE(reader.atEnd()) << document;
        EXPECT_TRUE(reader.hasError()) << document;
    }
}

TEST(BaseObjectWalk, LeavesAReaderThatStandsOnNoStartElement)
{
    QXmlStreamReader reader(QStringLiteral("<R>text<A/></R>"));
    Walker walker(Walker::LeaveOnStart);
    walker.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::NoToken);
    reader.readNext();
    walker.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::StartDocument);
    while (!reader.isCharacters())
        reader.readNext();
    walker.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::Characters);
    while (!reader.isEndElement())
        reader.readNext();
    walker.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::EndElement);
    EXPECT_EQ(reader.name().toString(), QStringLiteral("A"));
    while (!reader.atEnd())
        reader.readNext();
    walker.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::EndDocument);
    EXPECT_TRUE(walker.visited.isEmpty());
}

TEST(BaseObjectWalk, LeavesAReaderWithoutInputOrInError)
{
    Walker walker(Walker::LeaveOnStart);
    QXmlStreamReader none;
    walker.ProcessXml(none);
    EXPECT_EQ(none.tokenType(), QXmlStreamReader::NoToken);
    QXmlStreamReader broken(QStringLiteral("<<"));
    broken.readNext();
    broken.readNext();
    ASSERT_TRUE(broken.hasError());
    walker.ProcessXml(broken);
    EXPECT_TRUE(broken.hasError());
    EXPECT_TRUE(walker.visited.isEmpty());
}

TYPED_TEST(BaseObjectOfRecord, ReadingLeavesAReaderThatStandsOnNoStartElement)
{
    TypeParam record = TestFixture::Expected::make();
    QXmlStreamReader reader(TestFixture::xml());
    record.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::NoToken);
    ASSERT_TRUE(reader.readNextStartElement());
    while (!reader.isEndElement())
        reader.readNext();
    const QString name = reader.name().toString();
    record.ProcessXml(reader);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), name);
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, ReadingEndsOnTheRecordsOwnEnd)
{
    QXmlStreamReader reader(QStringLiteral("<D>") + TestFixture::xml() + QStringLiteral("<Next/></D>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    TypeParam record;
    record.ProcessXml(reader);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), TestFixture::name());
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Next"));
    TestFixture::expectSample(record);
}

TEST(BaseObjectWalk, GoesOnToTheRecordsEndWhenSkippingStoppedOnANestedElementOfTheSameName)
{
    OstraInterfacePort port;
    QXmlStreamReader reader(
        QStringLiteral("<D><OstraInterfacePort><X><X/></X><Port>5</Port></OstraInterfacePort><Next/></D>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    port.ProcessXml(reader);
    EXPECT_EQ(port.GetPort(), 5U);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("OstraInterfacePort"));
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Next"));
}

// --- whole documents: built on the object's own operations ------------------------------------

TEST(BaseObjectDocument, XmlIsWrittenByGetXmlAlone)
{
    Note note;
    note.text = QStringLiteral("a < b");
    const QString xml = note.GetXmlString();
    EXPECT_TRUE(xml.startsWith(QLatin1String("<?xml version=\"1.0\""))) << xml.toStdString();
    EXPECT_TRUE(xml.contains(QLatin1String("<Note>a &lt; b</Note>"))) << xml.toStdString();
    EXPECT_EQ(note.calls, Calls{"GetXml"});
}

TEST(BaseObjectDocument, XmlIsReadByResetAndProcessXml)
{
    Note note;
    EXPECT_TRUE(note.SetXmlString(QStringLiteral("<Note>text</Note>"), false));
    EXPECT_EQ(note.text, QStringLiteral("text"));
    EXPECT_EQ(note.calls, (Calls{"Reset", "ProcessXml"}));
}

TEST(BaseObjectDocument, CheckIsCalledAfterReadingWhenAskedFor)
{
    Note note;
    EXPECT_TRUE(note.SetXmlString(QStringLiteral("<Note>text</Note>"), true));
    EXPECT_EQ(note.calls, (Calls{"Reset", "ProcessXml", "Check()"}));
    note.refuses = true;
    expectThrow<IncompleteDefinitionException>(
        [&note] { note.SetXmlString(QStringLiteral("<Note>kept</Note>"), true); }, QStringLiteral("refused"));
    EXPECT_EQ(note.text, QStringLiteral("kept"));
}

TEST(BaseObjectDocument, WhatCannotBeReadIsNotChecked)
{
    Note note;
    note.refuses = true;
    EXPECT_FALSE(note.SetXmlString(QStringLiteral("<Other/>"), true));
    EXPECT_FALSE(note.SetXmlString(QStringLiteral("<Note>"), true));
}

TEST(BaseObjectDocument, TheBinaryFormIsTheFrameWithTheTypeCodeAsId)
{
    Note note(ObjectTypes::Settings);
    note.text = QStringLiteral("abc");
    EXPECT_EQ(note.GetBinaryRepresentationAsQByteArray(), bytes("00000003 00000003 616263"));
    EXPECT_EQ(note.calls, Calls{"GetBinary"});
}

TEST(BaseObjectDocument, TheBinaryFormIsReadByResetAndSetBinary)
{
    Note note(ObjectTypes::Settings);
    QByteArray form = bytes("00000003 00000003 616263");
    EXPECT_TRUE(note.SetBinaryRepresentation(form));
    EXPECT_EQ(note.text, QStringLiteral("abc"));
    EXPECT_EQ(note.calls, (Calls{"Reset", "SetBinary"}));
}

// --- whole documents: XML ---------------------------------------------------------------------

// What follows the declaration, whose encoding is the business of who writes it.
QString bodyOf(const QString& document)
{
    EXPECT_TRUE(document.startsWith(QLatin1String("<?xml version=\"1.0\""))) << document.toStdString();
    const auto end = document.indexOf(QLatin1String("?>\n"));
    EXPECT_GT(end, 0);
    return document.mid(end + 3).trimmed();
}

TYPED_TEST(BaseObjectOfRecord, GetXmlStringGivesADocumentIndentedByTwoBlanks)
{
    TypeParam record = TestFixture::Expected::make();
    EXPECT_EQ(bodyOf(record.GetXmlString()), TestFixture::xml());
}

TYPED_TEST(BaseObjectOfRecord, SetXmlStringReadsWhatGetXmlStringGives)
{
    TypeParam source = TestFixture::Expected::make();
    TypeParam record;
    EXPECT_TRUE(record.SetXmlString(source.GetXmlString(), true));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, SetXmlStringReadsDocumentsWithAndWithoutDeclaration)
{
    for (const char* prolog : {"", "<?xml version=\"1.0\"?>", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n",
                               "<!-- comment --><?target data?>\n"}) {
        TypeParam record;
        EXPECT_TRUE(record.SetXmlString(
            QLatin1String(prolog) + TestFixture::xml() + QStringLiteral("\n<!-- end -->\n"), false))
            << prolog;
        TestFixture::expectSample(record);
    }
}

TYPED_TEST(BaseObjectOfRecord, SetXmlStringReplacesTheContent)
{
    TypeParam record = TestFixture::Expected::make();
    EXPECT_TRUE(record.SetXmlString(TestFixture::xml(), false));
    TestFixture::expectSample(record);
    EXPECT_TRUE(record.SetXmlString(TestFixture::emptyElement(), false));
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record == TypeParam());
}

TYPED_TEST(BaseObjectOfRecord, SetXmlStringRefusesAnotherRootElementAndChangesNothing)
{
    TypeParam record = TestFixture::Expected::make();
    for (const QString& document :
         {QStringLiteral("<Other>") + TestFixture::xml() + QStringLiteral("</Other>"),
          QStringLiteral("<Other/>"), TestFixture::emptyElement().toLower(),
          QStringLiteral("<Prefixed") + TestFixture::emptyElement().mid(1)}) {
        EXPECT_FALSE(record.SetXmlString(document, false)) << document.toStdString();
        TestFixture::expectSample(record);
    }
}

TYPED_TEST(BaseObjectOfRecord, SetXmlStringRefusesTextThatIsNoDocument)
{
    const QString xml = TestFixture::xml();
    for (const QString& document :
         {QString(), empty(), QStringLiteral("text"), QStringLiteral("<?xml version=\"1.0\"?>"),
          xml.left(xml.size() - 1), xml + QStringLiteral("<more/>"), xml + QStringLiteral("text"),
          xml + xml}) {
        TypeParam record;
        EXPECT_FALSE(record.SetXmlString(document, false)) << document.toStdString();
    }
}

TYPED_TEST(BaseObjectOfRecord, SaveXmlWritesUtf8AndLoadXmlReadsIt)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("document.xml"));
    EXPECT_TRUE(TestFixture::Expected::make().SaveXml(path));

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray written = file.readAll();
    file.close();
    EXPECT_TRUE(written.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n")) << written.constData();
    EXPECT_EQ(bodyOf(QString::fromUtf8(written)), TestFixture::xml());

    TypeParam record;
    EXPECT_TRUE(record.LoadXml(path));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, LoadXmlReplacesTheContent)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("empty.xml"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(TestFixture::emptyElement().toUtf8());
    file.close();
    TypeParam record = TestFixture::Expected::make();
    EXPECT_TRUE(record.LoadXml(path));
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record == TypeParam());
}

TYPED_TEST(BaseObjectOfRecord, LoadXmlOfAFileObjectReadsClosedAndOpenFiles)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("document.xml"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("skipped" + QByteArray(TestFixture::Expected::xml));
    file.close();

    TypeParam fromOpen;
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    ASSERT_TRUE(file.seek(7));
    EXPECT_TRUE(fromOpen.LoadXml(&file));
    EXPECT_TRUE(file.isOpen());
    TestFixture::expectSample(fromOpen);
    file.close();

    TypeParam fromClosed;
    EXPECT_FALSE(fromClosed.LoadXml(&file)) << "the file does not begin with a document";
    EXPECT_FALSE(file.isOpen());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(TestFixture::Expected::xml);
    file.close();
    EXPECT_TRUE(fromClosed.LoadXml(&file));
    EXPECT_FALSE(file.isOpen());
    TestFixture::expectSample(fromClosed);
}

TYPED_TEST(BaseObjectOfRecord, LoadXmlOfWhatCannotBeReadChangesNothing)
{
    const QTemporaryDir directory;
    TypeParam record = TestFixture::Expected::make();
    QFile missing(directory.filePath(QStringLiteral("missing.xml")));
    EXPECT_FALSE(record.LoadXml(missing.fileName()));
    EXPECT_FALSE(record.LoadXml(&missing));
    EXPECT_FALSE(record.LoadXml(directory.path()));
    EXPECT_FALSE(record.LoadXml(static_cast<QFile*>(nullptr)));
    TestFixture::expectSample(record);
}

TEST(BaseObjectDocument, XmlThatBreaksOffIsRefusedButWhatWasReadStays)
{
    PelVtConnectServer server;
    server.SetPort(1);
    EXPECT_FALSE(server.SetXmlString(QStringLiteral("<PelVtConnectServer><Address>a</Address><Port"), true));
    EXPECT_EQ(server.GetAddress(), QStringLiteral("a"));
    EXPECT_FALSE(server.IsPortSet());
}

TEST(BaseObjectDocument, SetXmlStringChecksOnlyWhenAskedFor)
{
    PelLu300RouterMessage message;
    EXPECT_TRUE(message.SetXmlString(QStringLiteral("<PelLu300RouterMessage/>"), false));
    expectThrow<OutOfRangeException>(
        [&message] { message.SetXmlString(QStringLiteral("<PelLu300RouterMessage/>"), true); },
        QStringLiteral("PelLu300RouterMessage: Please set Type properly."));
    EXPECT_TRUE(message.SetXmlString(
        QStringLiteral("<PelLu300RouterMessage><Type>Reply</Type></PelLu300RouterMessage>"), true));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Reply);
}

TEST(BaseObjectDocument, WhatReadingThrowsPassesThrough)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    const QString xml = QStringLiteral("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Wrong</Type>"
                                       "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    const QString text =
        QStringLiteral("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)");
    expectThrow<OutOfRangeException>([&] { document.SetXmlString(xml, false); }, text);

    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("wrong.xml")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(xml.toUtf8());
    file.close();
    expectThrow<OutOfRangeException>([&] { document.LoadXml(file.fileName()); }, text);
    expectThrow<OutOfRangeException>([&] { document.LoadXml(&file); }, text);
}

TEST(BaseObjectDocument, WhatWritingThrowsPassesThroughAndLeavesAnExistingFile)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("kept.xml")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("as it was");
    file.close();

    PelLu300RouterMessage message;
    message.SetValidate(true);
    const QString text = QStringLiteral("PelLu300RouterMessage: Please set Type properly.");
    expectThrow<OutOfRangeException>([&] { message.GetXmlString(); }, text);
    expectThrow<OutOfRangeException>([&] { message.SaveXml(file.fileName()); }, text);
    expectThrow<OutOfRangeException>([&] { message.GetBinaryRepresentationAsQByteArray(); }, text);
    expectThrow<OutOfRangeException>([&] { message.GetCompressedBinaryRepresentationAsQByteArray(9); }, text);

    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("as it was"));
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden),
              QStringList(QStringLiteral("kept.xml")));
}

TEST(BaseObjectDocument, SaveXmlReplacesAnExistingFileAsAWhole)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("replaced.xml")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(100000, 'x'));
    file.close();
    EXPECT_TRUE(Sample<AcquireMastership>::make().SaveXml(file.fileName()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(bodyOf(QString::fromUtf8(file.readAll())), QString::fromUtf8(Sample<AcquireMastership>::xml));
}

TEST(BaseObjectDocument, SaveXmlToAPlaceThatIsNotThereIsRefused)
{
    const QTemporaryDir directory;
    EXPECT_FALSE(AcquireMastership().SaveXml(directory.filePath(QStringLiteral("missing/document.xml"))));
    EXPECT_FALSE(AcquireMastership().SaveXml(QString()));
    EXPECT_FALSE(AcquireMastership().SaveXml(directory.path()));
}

TEST(BaseObjectDocument, GetXmlStringOfTextThatXmlCannotCarryIsNull)
{
    PelVtConnectServer server;
    server.SetAddress(QStringLiteral("bell \u0007"));
    EXPECT_TRUE(server.GetXmlString().isNull());
}

TEST(BaseObjectDocument, SaveXmlRefusesTextThatXmlCannotCarry)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("document.xml"));
    PelVtConnectServer server;
    server.SetAddress(QStringLiteral("bell \u0007"));
    EXPECT_FALSE(server.SaveXml(path));
    EXPECT_FALSE(QFile::exists(path));
}

// --- whole documents: binary ------------------------------------------------------------------

TYPED_TEST(BaseObjectOfRecord, TheBinaryFormIsTheFrameWithTheClassIdInBigEndianOrder)
{
    EXPECT_EQ(TestFixture::Expected::make().GetBinaryRepresentationAsQByteArray(), TestFixture::binary());
    QByteArray streamed;
    QDataStream stream(&streamed, QIODevice::WriteOnly);
    TestFixture::Expected::make().GetBinaryRepresentation(stream);
    EXPECT_EQ(streamed, TestFixture::binary());
    EXPECT_EQ(stream.device()->pos(), streamed.size());
}

TYPED_TEST(BaseObjectOfRecord, TheBinaryFormIsReadFromBytes)
{
    QByteArray form = TestFixture::binary();
    TypeParam record;
    EXPECT_TRUE(record.SetBinaryRepresentation(form));
    TestFixture::expectSample(record);
    EXPECT_EQ(form, TestFixture::binary());
}

TYPED_TEST(BaseObjectOfRecord, TheBinaryFormIsReadFromAStreamThatIsLeftBehindIt)
{
    QDataStream stream(bytes("AA") + TestFixture::binary() + TestFixture::binary() + bytes("BB"));
    stream.device()->seek(1);
    TypeParam first;
    EXPECT_TRUE(first.SetBinaryRepresentation(stream));
    TypeParam second;
    EXPECT_TRUE(second.SetBinaryRepresentation(stream));
    TestFixture::expectSample(first);
    TestFixture::expectSample(second);
    quint8 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xBB);
}

TYPED_TEST(BaseObjectOfRecord, TheBinaryFormFollowsTheByteOrderOfTheStream)
{
    QByteArray form;
    QDataStream out(&form, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    TestFixture::Expected::make().GetBinaryRepresentation(out);
    QByteArray id = form.left(4);
    std::reverse(id.begin(), id.end());
    EXPECT_EQ(id, TestFixture::binary().left(4));
    EXPECT_EQ(out.byteOrder(), QDataStream::LittleEndian);

    QDataStream in(form);
    in.setByteOrder(QDataStream::LittleEndian);
    TypeParam record;
    EXPECT_TRUE(record.SetBinaryRepresentation(in));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, ReadingTheBinaryFormReplacesTheContent)
{
    TypeParam record = TestFixture::Expected::make();
    QByteArray form = TestFixture::emptyBinary();
    EXPECT_TRUE(record.SetBinaryRepresentation(form));
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record == TypeParam());
}

TYPED_TEST(BaseObjectOfRecord, BytesOfAnotherClassOrNoFormAreRefusedAndChangeNothing)
{
    TypeParam record = TestFixture::Expected::make();
    for (const QByteArray& wrong :
         {QByteArray(), TestFixture::binary().left(3), TestFixture::binary().left(7),
          bytes("00000000 00000000"), bytes("FFFFFFFF 00000000"), TestFixture::binary().mid(4),
          QByteArray(TestFixture::Expected::xml)}) {
        QByteArray form = wrong;
        EXPECT_FALSE(record.SetBinaryRepresentation(form)) << wrong.toHex().constData();
        QDataStream stream(wrong);
        EXPECT_FALSE(record.SetBinaryRepresentation(stream)) << wrong.toHex().constData();
        TestFixture::expectSample(record);
    }
}

TYPED_TEST(BaseObjectOfRecord, TheBinaryFormOfEveryOtherClassIsRefused)
{
    const QByteArrayList forms{bytes(Sample<OstraInterfacePort>::binary),
                               bytes(Sample<RouterVtServerPort>::binary),
                               bytes(Sample<PelVtConnectServer>::binary),
                               bytes(Sample<MastershipState>::binary),
                               bytes(Sample<AcquireMastership>::binary),
                               bytes(Sample<ReleaseMastership>::binary),
                               bytes(Sample<DF_Params>::binary),
                               bytes(Sample<Fragment>::binary),
                               bytes(Sample<PelLu300RouterMessage>::binary),
                               bytes(Sample<PelLu300RouterInterfaceXml>::binary)};
    int accepted = 0;
    for (QByteArray form : forms) {
        TypeParam record;
        const bool isOwn = form == TestFixture::binary();
        EXPECT_EQ(record.SetBinaryRepresentation(form), isOwn);
        EXPECT_EQ(record.AnyData(), isOwn);
        accepted += isOwn ? 1 : 0;
    }
    EXPECT_EQ(accepted, 1);
}

TYPED_TEST(BaseObjectOfRecord, ABinaryFormThatBreaksOffIsRefusedAndChangesNothing)
{
    const QByteArray form = TestFixture::binary();
    TypeParam record = TestFixture::Expected::make();
    for (const int size : {4, 7, 8, 9, static_cast<int>(form.size()) - 1}) {
        QByteArray cut = form.left(size);
        EXPECT_FALSE(record.SetBinaryRepresentation(cut)) << size;
        QDataStream stream(cut);
        EXPECT_FALSE(record.SetBinaryRepresentation(stream)) << size;
        TestFixture::expectSample(record);
    }
}

TYPED_TEST(BaseObjectOfRecord, WhatReadingABinaryFormThrowsPassesThrough)
{
    // The announced bytes are there but hold only half the header of an entry.
    QByteArray form = TestFixture::binary().left(4) + bytes("00000004 00000000");
    TypeParam record;
    expectThrow<BinaryParsingException>(
        [&] { record.SetBinaryRepresentation(form); },
        TestFixture::name()
            + QStringLiteral(
                "::SetBinary(...): Length error occurred during processing of binary representation"));
}

TYPED_TEST(BaseObjectOfRecord, BytesBehindTheBinaryFormAreIgnored)
{
    QByteArray form = TestFixture::binary() + bytes("BB");
    TypeParam record;
    EXPECT_TRUE(record.SetBinaryRepresentation(form));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, TheCompressedFormIsReadFromBytes)
{
    for (const int level : {-1, 0, 1, 9}) {
        QByteArray form = TestFixture::Expected::make().GetCompressedBinaryRepresentationAsQByteArray(level);
        EXPECT_NE(form, TestFixture::binary()) << level;
        TypeParam record;
        EXPECT_TRUE(record.SetBinaryRepresentation(form)) << level;
        TestFixture::expectSample(record);
    }
}

TYPED_TEST(BaseObjectOfRecord, TheCompressedFormIsReadFromAStreamThatIsLeftBehindIt)
{
    for (const QDataStream::ByteOrder order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
        QByteArray form;
        QDataStream out(&form, QIODevice::WriteOnly);
        out.setByteOrder(order);
        TestFixture::Expected::make().GetCompressedBinaryRepresentation(out, 9);
        TestFixture::Expected::make().GetCompressedBinaryRepresentation(out, 0);
        out << quint8(0xBB);

        QDataStream in(form);
        in.setByteOrder(order);
        TypeParam first;
        EXPECT_TRUE(first.SetBinaryRepresentation(in));
        TypeParam second;
        EXPECT_TRUE(second.SetBinaryRepresentation(in));
        TestFixture::expectSample(first);
        TestFixture::expectSample(second);
        quint8 behind = 0;
        in >> behind;
        EXPECT_EQ(behind, 0xBB);
    }
}

TYPED_TEST(BaseObjectOfRecord, ACompressedFormThatIsDamagedIsRefusedAndChangesNothing)
{
    const QByteArray form = TestFixture::Expected::make().GetCompressedBinaryRepresentationAsQByteArray(9);
    TypeParam record = TestFixture::Expected::make();
    QByteArray cut = form.left(form.size() - 4);
    EXPECT_FALSE(record.SetBinaryRepresentation(cut));
    QByteArray flipped = form;
    flipped[flipped.size() - 1] = static_cast<char>(flipped.at(flipped.size() - 1) ^ 1);
    EXPECT_FALSE(record.SetBinaryRepresentation(flipped));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, LoadBinaryReadsPlainAndCompressedFiles)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("document.bin")));
    for (const QByteArray& form :
         {TestFixture::binary(),
          TestFixture::Expected::make().GetCompressedBinaryRepresentationAsQByteArray(9)}) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(form);
        file.close();

        TypeParam fromClosed;
        EXPECT_TRUE(fromClosed.LoadBinary(&file));
        EXPECT_FALSE(file.isOpen());
        TestFixture::expectSample(fromClosed);

        TypeParam fromOpen;
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_TRUE(fromOpen.LoadBinary(&file));
        EXPECT_TRUE(file.isOpen());
        TestFixture::expectSample(fromOpen);
        file.close();
    }
}

TYPED_TEST(BaseObjectOfRecord, LoadBinaryOfWhatCannotBeReadChangesNothing)
{
    const QTemporaryDir directory;
    TypeParam record = TestFixture::Expected::make();
    QFile file(directory.filePath(QStringLiteral("document.bin")));
    EXPECT_FALSE(record.LoadBinary(&file));
    EXPECT_FALSE(record.LoadBinary(nullptr));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(TestFixture::Expected::xml);
    file.close();
    EXPECT_FALSE(record.LoadBinary(&file));
    TestFixture::expectSample(record);
}

TEST(BaseObjectDocument, CompressionLevelsAreClamped)
{
    PelVtConnectServer server;
    server.SetAddress(QString(20000, QLatin1Char('a')));
    const auto compressed = [&server](int level) {
        return server.GetCompressedBinaryRepresentationAsQByteArray(level);
    };
    EXPECT_EQ(compressed(-100), compressed(-1));
    EXPECT_EQ(compressed(10), compressed(9));
    EXPECT_EQ(compressed(INT_MAX), compressed(9));
    EXPECT_GT(compressed(0).size(), 20000);
    EXPECT_LT(compressed(1).size(), 1000);
    EXPECT_LT(compressed(-1).size(), 1000);
    EXPECT_LE(compressed(9).size(), compressed(1).size());
}

TEST(BaseObjectDocument, BothBinaryFormsAreEmptyWhenValidationLetsNothingBeWritten)
{
    Fragment fragment;
    fragment.SetValidate(true);
    EXPECT_TRUE(fragment.GetBinaryRepresentationAsQByteArray().isEmpty());
    EXPECT_TRUE(fragment.GetCompressedBinaryRepresentationAsQByteArray(9).isEmpty());
}

// --- merging ----------------------------------------------------------------------------------

TYPED_TEST(BaseObjectOfRecord, MergingIntoAnEmptyRecordGivesTheOther)
{
    TypeParam record;
    EXPECT_TRUE(record.MergeMKObject(TestFixture::Expected::make()));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, MergingAnEmptyRecordChangesNothing)
{
    TypeParam record = TestFixture::Expected::make();
    EXPECT_TRUE(record.MergeMKObject(TypeParam()));
    TestFixture::expectSample(record);
}

template <class Record, class Other>
void expectMergeIsRefused()
{
    if (std::is_same_v<Record, Other>)
        return;
    Record record = Sample<Record>::make();
    const QByteArray before = frameOf(record);
    EXPECT_FALSE(record.MergeMKObject(Sample<Other>::make())) << Sample<Other>::name;
    EXPECT_EQ(frameOf(record), before) << Sample<Other>::name;
}

template <class Record, class... Others>
void expectMergeOfOthersIsRefused(::testing::Types<Others...>)
{
    (expectMergeIsRefused<Record, Others>(), ...);
}

TYPED_TEST(BaseObjectOfRecord, MergingAnObjectOfAnotherClassIsRefusedAndChangesNothing)
{
    expectMergeOfOthersIsRefused<TypeParam>(AllRecords());
    TypeParam record = TestFixture::Expected::make();
    EXPECT_FALSE(record.MergeMKObject(Note()));
    TestFixture::expectSample(record);
}

TEST(BaseObjectMerge, MembersThatTheOtherHasSetReplaceTheOwn)
{
    PelVtConnectServer server;
    server.SetAddress(QStringLiteral("kept"));
    server.SetPort(1);
    PelVtConnectServer other;
    other.SetPort(2);
    EXPECT_TRUE(server.MergeMKObject(other));
    EXPECT_EQ(server.GetAddress(), QStringLiteral("kept"));
    EXPECT_EQ(server.GetPort(), 2U);
    EXPECT_FALSE(other.IsAddressSet());
    EXPECT_EQ(other.GetPort(), 2U);
}

TEST(BaseObjectMerge, ListsAreAppended)
{
    auto message = Sample<PelLu300RouterMessage>::make();
    auto other = PelLu300RouterMessage();
    other.SetType(PelLu300RouterMessage::Event);
    Fragment server;
    server.SetPelVtConnectServer(Sample<PelVtConnectServer>::make());
    other.AppendFragment(server);
    EXPECT_TRUE(message.MergeMKObject(other));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    EXPECT_EQ(message.GetMessageID(), 7U);
    ASSERT_EQ(message.GetFragment().size(), 3);
    EXPECT_EQ(message.GetFragment().at(0).GetChoiceFragment(), Fragment::AcquireMastership);
    EXPECT_EQ(message.GetFragment().at(1).GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_EQ(message.GetFragment().at(2).GetChoiceFragment(), Fragment::PelVtConnectServer);
}

TEST(BaseObjectMerge, AMemberThatTheOtherHasNotSetKeepsItsValueInAMessage)
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Reply);
    PelLu300RouterMessage other;
    other.SetMessageID(9);
    EXPECT_TRUE(message.MergeMKObject(other));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Reply);
    EXPECT_EQ(message.GetMessageID(), 9U);

    PelLu300RouterMessage untyped;
    EXPECT_TRUE(untyped.MergeMKObject(other));
    EXPECT_FALSE(untyped.IsTypeSet());

    PelLu300RouterInterfaceXml document;
    document.SetPelLu300RouterMessage(message);
    PelLu300RouterInterfaceXml otherDocument;
    otherDocument.SetPelLu300RouterMessage(other);
    EXPECT_TRUE(document.MergeMKObject(otherDocument));
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetType(), PelLu300RouterMessage::Reply);
}

TEST(BaseObjectMerge, ValuesAreTakenOverExactly)
{
    DF_Params other;
    other.SetFrequency(0.001953125);
    DF_Params params;
    EXPECT_TRUE(params.MergeMKObject(other));
    EXPECT_EQ(params.GetFrequency(), 0.001953125);
}

TEST(BaseObjectMerge, TheSettingsOfBothStay)
{
    PelVtConnectServer server;
    const auto logger = std::make_shared<Logger>();
    server.SetLogger(logger);
    PelVtConnectServer other = Sample<PelVtConnectServer>::make();
    other.SetValidate(true);
    EXPECT_TRUE(server.MergeMKObject(other));
    EXPECT_FALSE(server.GetValidate());
    EXPECT_EQ(server.GetLogger(), logger);
    EXPECT_TRUE(other.GetValidate());
    EXPECT_EQ(other.GetLogger(), nullptr);
}

TEST(BaseObjectMerge, AnIncompleteObjectIsMergedUnderValidation)
{
    PelLu300RouterMessage message = Sample<PelLu300RouterMessage>::make();
    PelLu300RouterMessage other;
    other.SetMessageID(9);
    other.SetValidate(true);
    EXPECT_TRUE(message.MergeMKObject(other));
    EXPECT_EQ(message.GetMessageID(), 9U);
}

TEST(BaseObjectMerge, AnObjectMergedIntoItselfStaysAsItIsButForItsLists)
{
    PelVtConnectServer server = Sample<PelVtConnectServer>::make();
    EXPECT_TRUE(server.MergeMKObject(server));
    EXPECT_TRUE(server == Sample<PelVtConnectServer>::make());
    PelLu300RouterMessage message = Sample<PelLu300RouterMessage>::make();
    EXPECT_TRUE(message.MergeMKObject(message));
    EXPECT_EQ(message.GetFragment().size(), 4);
}

// --- the logger of owned records --------------------------------------------------------------

TEST(BaseObjectState, OwnedRecordsLetGoOfTheLoggerAtTheirOwnersNextOperation)
{
    auto document = Sample<PelLu300RouterInterfaceXml>::make();
    const auto logger = std::make_shared<Logger>();
    document.SetLogger(logger);
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetLogger(), logger);
    document.ResetLogger();
    EXPECT_EQ(document.GetLogger(), nullptr);
    document.Check();
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetLogger(), nullptr);
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetFragment().at(0).GetLogger(), nullptr);
    EXPECT_EQ(logger.use_count(), 1);
}

} // namespace
