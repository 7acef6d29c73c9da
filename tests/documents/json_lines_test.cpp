// SPDX-License-Identifier: MIT
// JSON on one line, for which random records go there and back.
#include "TestSupport.h"

#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/JsonForm.h"

#include "routerinterface/RecordInfo.h"

#include <cmath>
#include <iterator>
#include <random>

using namespace ROUTERDOCUMENTS;
using namespace testing_support;

namespace {

// Fills records with random values of all members.
class Generator
{
public:
    explicit Generator(unsigned int seed) : m_random(seed) {}

    std::unique_ptr<MODELKIT::IMKObject> record(const RecordInfo& info)
    {
        auto made = info.Create();
        fill(*made);
        return made;
    }

    int below(qint64 limit) { return static_cast<int>(m_random() % static_cast<unsigned int>(limit)); }

private:
    void fill(MODELKIT::IMKObject& record)
    {
        const auto& members = RecordInfo::Of(record).GetMembers();
        const bool isChoice = RecordInfo::Of(record).IsChoice();
        const int chosen = below(members.size());
        for (int i = 0; i < members.size(); ++i)
            if (isChoice ? i == chosen : below(4) > 0)
                set(record, *members.at(i));
    }

    void set(MODELKIT::IMKObject& record, const MemberInfo& member)
    {
        if (member.GetKind() == MemberInfo::Record) {
            fill(member.EditRecord(record));
        } else if (member.GetKind() == MemberInfo::List) {
            for (int count = below(4); count > 0; --count) {
                member.AppendItem(record, member.GetDefaultRecord(record));
                fill(member.EditItem(record, member.CountItems(record) - 1));
            }
        } else {
            member.SetValue(record, value(member));
        }
    }

    QVariant value(const MemberInfo& member)
    {
        static const char* const texts[] = {"",
                                            "router",
                                            "\"quoted\" \\ and {[",
                                            "line\nbreak\ttab",
                                            "\x01\x1F",
                                            "\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80",
                                            "\xE2\x80\xA8",
                                            "null"};
        switch (member.GetKind()) {
        case MemberInfo::UnsignedInteger:
            return static_cast<unsigned int>(m_random() >> below(32));
        case MemberInfo::Decimal:
            return (below(2) > 0 ? 1 : -1) * std::ldexp(1.0 + below(1 << 20), below(60) - 40);
        case MemberInfo::Boolean:
            return below(2) > 0;
        case MemberInfo::Enumeration:
            return member.GetNames().at(below(member.GetNames().size()));
        default:
            return QString::fromUtf8(texts[below(static_cast<int>(std::size(texts)))]);
        }
    }

    std::mt19937 m_random;
};

} // namespace

TEST(JsonLines, AreOneLineWithoutWhiteSpace)
{
    OstraInterfacePort port;
    EXPECT_EQ(ToJsonLine(port), "{\"OstraInterfacePort\":{}}\n");
    port.SetPort(7);
    EXPECT_EQ(ToJsonLine(port), "{\"OstraInterfacePort\":{\"Port\":7}}\n");
    EXPECT_EQ(WriteDocument(port, Form::JsonLines), ToJsonLine(port));
}

TEST(JsonLines, AreReadAsJson)
{
    OstraInterfacePort port;
    port.SetPort(7);
    const QByteArray line = ToJsonLine(port);
    EXPECT_EQ(FormOfContent(line), Form::Json);
    const Document document = ReadDocument(line, {Form::JsonLines});
    EXPECT_EQ(document.form, Form::JsonLines);
    EXPECT_EQ(ToJsonLine(*document.record), line);
    EXPECT_THROW(ReadDocument("[]", {Form::JsonLines}), DocumentError);
}

TEST(JsonLines, HaveANameAndAnEnding)
{
    EXPECT_EQ(NameOf(Form::JsonLines), "jsonl");
    EXPECT_EQ(FormByName(QStringLiteral("jsonl")), Form::JsonLines);
    EXPECT_EQ(FormOfFileName(QStringLiteral("a.JSONL")), Form::JsonLines);
    EXPECT_EQ(FormOfFileName(QStringLiteral("a.json")), Form::Json);
}

TEST(JsonLines, SayWhatJsonSays)
{
    Generator generator(1);
    for (int round = 0; round < 500; ++round) {
        const auto record = generator.record(RecordInfo::Document());
        const QByteArray line = ToJsonLine(*record);
        EXPECT_EQ(line.count('\n'), 1);
        EXPECT_EQ(ToJson(*FromJson(line)), ToJson(*record));
    }
}

TEST(JsonLines, GiveCanonicalBinaryFormsBack)
{
    Generator generator(20261122);
    const auto& classes = RecordInfo::All();
    for (int round = 0; round < 2000; ++round) {
        const auto& info =
            round % 2 == 0 ? RecordInfo::Document() : *classes.at(generator.below(classes.size()));
        const auto record = generator.record(info);
        const auto read = ReadDocument(WriteDocument(*record, Form::Binary)).record;
        const QByteArray canonical = WriteDocument(*read, Form::Binary);
        const QByteArray line = WriteDocument(*read, Form::JsonLines);
        ASSERT_EQ(WriteDocument(*ReadDocument(line).record, Form::Binary), canonical) << line.constData();
        ASSERT_EQ(WriteDocument(*ReadDocument(line).record, Form::JsonLines), line);
    }
}
