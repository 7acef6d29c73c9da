// SPDX-License-Identifier: MIT
// What the tests of the base object share: small objects that are not records, and a filled record of each
// class with its written forms.
#pragma once

#include "TestSupport.h"

#include <cstring>
#include <string>
#include <vector>

namespace testing_support {

using MODELKIT::IMKObject;
using MODELKIT::ObjectTypes;

// --- objects for the tests --------------------------------------------------------------------

// A small object that is not a record. It has one text, which the four operations that the base object calls
// write and read. It notes the calls.
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

// Notes the child elements that the walk of the base object passes to it, and treats each in the given way.
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

// --- records ----------------------------------------------------------------------------------

// A filled record of each class with its written forms: the element, indented as in a whole document, and the
// whole-object form in big-endian order.
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
    // The whole-object form of a record without any member.
    static QByteArray emptyBinary() { return binary().left(4) + bytes("00000000"); }

    static void expectSample(const R& record)
    {
        EXPECT_TRUE(record == Expected::make());
        EXPECT_EQ(frameOf(record), binary().mid(4));
    }
};

} // namespace testing_support
