// SPDX-License-Identifier: MIT
// The life of reports: which one collects, in which order and thread they may end, and which entries a
// document leaves when it is refused or something throws. report_test.cpp has the kinds of entries.

#include "TestSupport.h"

#include "modelkit/LogSinks.h"
#include "modelkit/ReadingReport.h"

#include <memory>
#include <stdexcept>
#include <thread>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::Limits;
using MODELKIT::ReadingReport;

namespace {

QString withUnknown(const char* name) { return text("<DF_Params>\n <%1/></DF_Params>").arg(text(name)); }

void read(const char* name)
{
    DF_Params record;
    ASSERT_TRUE(record.SetXmlString(withUnknown(name), false));
}

// The last step of the path of every entry.
QStringList names(const ReadingReport& report)
{
    QStringList all;
    for (const ReadingReport::Entry& entry : report.GetEntries())
        all += entry.place.path.section(QLatin1Char('/'), -1);
    return all;
}

QStringList list(std::initializer_list<const char*> words)
{
    QStringList all;
    for (const char* const word : words)
        all += text(word);
    return all;
}

class Throwing : public MODELKIT::LogSink
{
public:
    void Write(MODELKIT::Logger::Level, const QString&) override { throw std::runtime_error("no ink"); }
};

} // namespace

TEST(ReadingReports, TheNewestCollectsWhateverTheOrderOfTheirEnd)
{
    auto oldest = std::make_unique<ReadingReport>();
    read("a");
    auto middle = std::make_unique<ReadingReport>();
    read("b");
    auto newest = std::make_unique<ReadingReport>();
    read("c");
    EXPECT_EQ(names(*oldest), list({"a"}));
    EXPECT_EQ(names(*middle), list({"b"}));
    EXPECT_EQ(names(*newest), list({"c"}));
    oldest.reset();
    read("d");
    EXPECT_EQ(names(*newest), list({"c", "d"}));
    newest.reset();
    read("e");
    EXPECT_EQ(names(*middle), list({"b", "e"}));
    middle.reset();
    read("f");
}

TEST(ReadingReports, MayEndInAnotherThread)
{
    auto first = std::make_unique<ReadingReport>();
    auto second = std::make_unique<ReadingReport>();
    read("a");
    EXPECT_EQ(names(*second), list({"a"}));
    std::thread([&second] { second.reset(); }).join();
    read("b");
    EXPECT_EQ(names(*first), list({"b"}));
    std::thread([&first] { first.reset(); }).join();
    read("c");
}

TEST(ReadingReports, MayOutliveTheirThread)
{
    std::unique_ptr<ReadingReport> report;
    std::thread([&report] {
        report = std::make_unique<ReadingReport>();
        read("a");
    }).join();
    EXPECT_EQ(names(*report), list({"a"}));
    read("b");
    EXPECT_EQ(names(*report), list({"a"}));
}

TEST(ReadingReports, MayEndWhileTheyCollect)
{
    // A device that destroys the report in the middle of a reading.
    auto report = std::make_unique<ReadingReport>();
    struct Device : QBuffer
    {
        std::unique_ptr<ReadingReport>* report;
        qint64 readData(char* data, qint64 size) override
        {
            report->reset();
            return QBuffer::readData(data, size);
        }
    } device;
    device.report = &report;
    device.setData(withUnknown("a").toUtf8());
    ASSERT_TRUE(device.open(QIODevice::ReadOnly));
    DF_Params record;
    EXPECT_TRUE(record.LoadXml(&device));
    EXPECT_FALSE(report);
    // The same, done by the record itself.
    struct Letting : DF_Params
    {
        std::unique_ptr<ReadingReport> report = std::make_unique<ReadingReport>();
        void ProcessXmlStartElement(QXmlStreamReader& reader) override
        {
            DF_Params::ProcessXmlStartElement(reader);
            report.reset();
        }
    } letting;
    EXPECT_TRUE(letting.SetXmlString(text("<DF_Params><a/><b/></DF_Params>"), false));
    EXPECT_FALSE(letting.report);
    // Clearing it there removes the entries of other documents. Those of this document are added at the end.
    struct Clearing : DF_Params
    {
        ReadingReport report;
        void ProcessXmlStartElement(QXmlStreamReader& reader) override
        {
            DF_Params::ProcessXmlStartElement(reader);
            report.Clear();
        }
    } clearing;
    read("before");
    EXPECT_EQ(names(clearing.report), list({"before"}));
    EXPECT_TRUE(clearing.SetXmlString(text("<DF_Params><a/><b/>\n<c/></DF_Params>"), false));
    EXPECT_EQ(names(clearing.report), list({"a", "b", "c"}));
    EXPECT_EQ(clearing.report.GetEntries().at(2).place.ToString(), text("2:1"));
    EXPECT_FALSE(clearing.SetXmlString(text("<DF_Params><a/><b/>\n<c/>"), false));
    EXPECT_TRUE(clearing.report.GetEntries().isEmpty());
    EXPECT_EQ(clearing.report.GetDropped(), 0);
}

TEST(ReadingReports, KeepNothingOfInputThatIsNoDocument)
{
    ReadingReport report;
    read("before");
    DF_Params record;
    EXPECT_FALSE(record.SetXmlString(text("<DF_Params><a/>"), false));
    EXPECT_FALSE(record.SetXmlString(text("<DF_Params><a/></DF_Params>x"), false));
    EXPECT_FALSE(record.SetXmlString(text("<DF_Params><a/><b c></DF_Params>"), false));
    {
        Limits limits;
        limits.nestingDepth = 2;
        const MODELKIT::LimitsInScope inScope(limits);
        EXPECT_FALSE(record.SetXmlString(text("<DF_Params><a/><b><c/></b></DF_Params>"), false));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NestedTooDeep);
    }
    {
        // An unknown entry in front of more items than the limit.
        Limits limits;
        limits.listItems = 0;
        const MODELKIT::LimitsInScope inScope(limits);
        PelLu300RouterMessage message;
        EXPECT_FALSE(message.SetBinaryRepresentation(
            bytes("EAC09D5A 0000001C 00000001 00000000 61023A90 0000000C 00000002 00000000 00000000")));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::TooManyItems);
    }
    // An unknown entry, and then one whose length is wrong.
    OstraInterfacePort port;
    EXPECT_THROW(
        port.SetBinaryRepresentation(bytes("7F012EB8 00000011 00000001 00000000 1F980517 00000001 00")),
        BinaryParsingException);
    EXPECT_EQ(names(report), list({"before"}));
    EXPECT_EQ(report.GetDropped(), 0);
}

TEST(ReadingReports, HaveTheirPlacesAlsoWhenSomethingThrows)
{
    struct Failing : DF_Params
    {
        void ProcessXmlStartElement(QXmlStreamReader& reader) override
        {
            if (reader.name() == QLatin1String("Bandwidth"))
                throw std::runtime_error("not mine");
            DF_Params::ProcessXmlStartElement(reader);
        }
    } record;
    ReadingReport report;
    EXPECT_THROW(record.SetXmlString(text("<DF_Params>\n  <a/><Bandwidth/></DF_Params>"), false),
                 std::runtime_error);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::Interrupted);
    ASSERT_EQ(report.GetEntries().size(), 1);
    EXPECT_EQ(report.GetEntries().at(0).place.ToString(), text("2:3"));
    EXPECT_EQ(report.GetEntries().at(0).place.path, text("/DF_Params/a"));
    // A log sink that throws while an exception of a record is logged.
    MastershipState state;
    state.SetValidate(true);
    state.SetLogger(std::make_shared<MODELKIT::Logger>(std::make_shared<Throwing>()));
    report.Clear();
    EXPECT_THROW(
        state.SetXmlString(text("<MastershipState><a/>\n<State>None</State></MastershipState>"), false),
        std::runtime_error);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::Refused);
    ASSERT_EQ(report.GetEntries().size(), 1);
    EXPECT_EQ(report.GetEntries().at(0).place.ToString(), text("1:18"));
}

TEST(ReadingReports, TellOfBytesBehindABinaryForm)
{
    const QByteArray form = bytes("7F012EB8 00000010 1F980517 00000008 0000000000001388");
    const auto expectBehind = [&](const QByteArray& input, const char* sentence, qint64 offset) {
        ReadingReport report;
        OstraInterfacePort record;
        EXPECT_TRUE(record.SetBinaryRepresentation(input));
        QByteArray copy = input;
        QBuffer buffer(&copy);
        EXPECT_TRUE(record.LoadBinary(&buffer));
        EXPECT_EQ(record.GetPort(), 5000U);
        ASSERT_EQ(report.GetEntries().size(), 2);
        for (const ReadingReport::Entry& entry : report.GetEntries()) {
            EXPECT_EQ(entry.kind, ReadingReport::BytesBehind);
            EXPECT_EQ(entry.text, text(sentence));
            EXPECT_EQ(entry.place.offset, offset);
        }
    };
    expectBehind(form + "x", "1 byte behind the binary form was ignored.", 24);
    expectBehind(form + form, "24 bytes behind the binary form were ignored.", 24);
    OstraInterfacePort port;
    port.SetPort(5000);
    expectBehind(port.GetCompressedBinaryRepresentationAsQByteArray(9) + "xy",
                 "2 bytes behind the binary form were ignored.", 24);
    // Bytes behind the form inside a compressed one.
    QByteArray pieces;
    QDataStream inner(&pieces, QIODevice::WriteOnly);
    inner << qCompress(form + "xyz", 9);
    QByteArray compressed;
    QDataStream outer(&compressed, QIODevice::WriteOnly);
    outer << 0x4D4B5A31 << pieces;
    expectBehind(compressed, "3 bytes behind the binary form were ignored.", 24);
    // A stream may continue behind the form, so no entry is made.
    ReadingReport report;
    QDataStream stream(form + form);
    OstraInterfacePort record;
    EXPECT_TRUE(record.SetBinaryRepresentation(stream));
    EXPECT_TRUE(record.SetBinaryRepresentation(stream));
    EXPECT_TRUE(report.GetEntries().isEmpty());
}
