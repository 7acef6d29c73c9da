// SPDX-License-Identifier: MIT
// Every value that a record can hold survives as JSON, and JSON numbers are what they say.
#include "ReportSupport.h"
#include "TestSupport.h"

#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/JsonForm.h"
#include "documents/Values.h"

#include "modelkit/Limits.h"
#include "modelkit/ReadingReport.h"
#include "routerinterface/RecordInfo.h"

#include <cmath>
#include <limits>

using namespace ROUTERDOCUMENTS;
using namespace testing_support;

namespace {

QVector<QVariant> decimals()
{
    using Limits = std::numeric_limits<double>;
    QVector<QVariant> values;
    for (const double value : {0.0, 0.1, 1.0 / 3, 0.125, 98437000.125, 1e15, 1e-6, 9007199254740993.0, 1e22,
                               1.0 + Limits::epsilon(), Limits::max(), Limits::min(), Limits::denorm_min(),
                               Limits::epsilon(), Limits::infinity()}) {
        values += value;
        values += -value;
    }
    return values << Limits::quiet_NaN();
}

QVector<QVariant> texts()
{
    QString every;
    for (char16_t unit = 0; unit < 0x300; ++unit)
        every += QChar(unit);
    QVector<QVariant> values{QString(), QStringLiteral(""), QStringLiteral("null"), every};
    for (const char16_t unit :
         {u'\0', u'\x1F', u'"', u'\\', u'\x7F', u'\u0080', u'\u2028', u'\uFEFF', u'\uFFFE', u'\uFFFF',
          char16_t{0xD800}, char16_t{0xDBFF}, char16_t{0xDC00}, char16_t{0xDFFF}}) {
        values += QString(QChar(unit));
        values += QStringLiteral("a") + QChar(unit) + QStringLiteral("b");
    }
    // Halves in the wrong order, and a whole pair.
    values += QString(QChar(0xDE00)) + QChar(0xD83D);
    values += QString(QChar(0xD83D)) + QChar(0xDE00);
    values += QString(QChar(0xD83D)) + QChar(0xD83D) + QChar(0xDE00);
    return values;
}

QVector<QVariant> extremesOf(const MemberInfo& member)
{
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger:
        return {0U, 1U, 2147483647U, 2147483648U, 4294967295U};
    case MemberInfo::Decimal:
        return decimals();
    case MemberInfo::Boolean:
        return {false, true};
    case MemberInfo::Text:
        return texts();
    default:
        break;
    }
    QVector<QVariant> values;
    for (int i = 0; i < member.GetNames().size(); ++i)
        values += i;
    return values << -1;
}

bool isValue(const MemberInfo& member)
{
    return member.GetKind() != MemberInfo::Record && member.GetKind() != MemberInfo::List;
}

// Calls check(record, member, value) for every extreme value that a member takes.
template <class Check>
int forEveryValue(bool validate, const Check& check)
{
    int count = 0;
    for (const RecordInfo* info : RecordInfo::All())
        for (const MemberInfo* member : info->GetMembers()) {
            if (!isValue(*member))
                continue;
            for (const QVariant& value : extremesOf(*member)) {
                if (validate && !member->IsValid(value))
                    continue;
                const auto record = info->Create();
                record->SetValidate(validate);
                member->SetValue(*record, value);
                check(*record, *member, value);
                ++count;
            }
        }
    return count;
}

TEST(JsonValues, SurviveInEveryMember)
{
    for (const bool validate : {false, true}) {
        const int count = forEveryValue(validate, [&](const MODELKIT::IMKObject& record,
                                                      const MemberInfo& member, const QVariant& value) {
            for (const QByteArray& json : {ToJson(record), ToJsonLine(record)}) {
                const MODELKIT::ReadingReport report;
                const auto read = FromJson(json, validate ? Validation::On : Validation::Off);
                ASSERT_TRUE(member.IsSet(*read)) << json.constData();
                EXPECT_TRUE(IsSameValue(member, member.GetValue(*read), member.GetValue(record)))
                    << json.constData();
                EXPECT_TRUE(IsSameValue(member, member.GetValue(record), value)) << json.constData();
                EXPECT_EQ(ToJson(*read), ToJson(record));
                EXPECT_TRUE(report.GetEntries().isEmpty()) << json.constData();
            }
        });
        EXPECT_GT(count, 100);
    }
}

TEST(JsonValues, AreDifferentWhenTheirJsonIs)
{
    for (const RecordInfo* info : RecordInfo::All())
        for (const MemberInfo* member : info->GetMembers()) {
            if (!isValue(*member))
                continue;
            QSet<QByteArray> known;
            QVector<QVariant> values;
            for (const QVariant& value : extremesOf(*member)) {
                const auto isSame = [&](const QVariant& other) { return IsSameValue(*member, value, other); };
                if (std::any_of(values.cbegin(), values.cend(), isSame))
                    continue;
                values += value;
                const auto record = info->Create();
                member->SetValue(*record, value);
                const QByteArray json = ToJson(*record);
                EXPECT_FALSE(known.contains(json)) << json.constData();
                known += json;
            }
        }
}

// Any number that is no enumerator is the invalid value.
TEST(JsonValues, KnowOneInvalidEnumerator)
{
    PelLu300RouterMessage message;
    const MemberInfo& type = *RecordInfo::Of(message).FindMember(text("Type"));
    for (const int number : {-1, 3, 99, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        type.SetValue(message, number);
        EXPECT_EQ(ToJsonLine(message), "{\"PelLu300RouterMessage\":{\"Type\":null}}\n");
    }
}

// --- numbers -----------------------------------------------------------------------------------

QByteArray port(const QByteArray& number) { return "{\"OstraInterfacePort\": {\"Port\": " + number + "}}"; }
QByteArray frequency(const QByteArray& number) { return "{\"DF_Params\": {\"Frequency\": " + number + "}}"; }

QString refusalOf(const QByteArray& json)
{
    try {
        FromJson(json);
    } catch (const DocumentError& error) {
        EXPECT_EQ(error.GetKind(), MODELKIT::Failure::Refused);
        EXPECT_EQ(error.GetPlace().line, 1);
        EXPECT_GT(error.GetPlace().column, 20);
        return error.GetText();
    }
    return {};
}

TEST(JsonValues, AreWholeNumbersInEverySpelling)
{
    const std::pair<const char*, unsigned int> spellings[] = {{"0", 0},
                                                              {"-0", 0},
                                                              {"-0.0", 0},
                                                              {"0e999999999999999999999", 0},
                                                              {"7", 7},
                                                              {"7.000", 7},
                                                              {"70e-1", 7},
                                                              {"0.7e1", 7},
                                                              {"1E3", 1000},
                                                              {"0.0000000001e10", 1},
                                                              {"4294967295", 4294967295U},
                                                              {"4294967295.0", 4294967295U},
                                                              {"42949672950000e-4", 4294967295U}};
    for (const auto& [number, value] : spellings)
        EXPECT_EQ(dynamic_cast<OstraInterfacePort&>(*FromJson(port(number))).GetPort(), value) << number;
    for (const QByteArray number :
         {"-1", "0.5", "4294967296", "18446744073709551616", "4294967295.0000000001", "1e10", "1e-1",
          "1e999999999999999999999", "1e-999999999999999999999", "-1e-400"})
        EXPECT_EQ(refusalOf(port(number)),
                  QString::fromLatin1(number + " is no whole number from 0 to 4294967295."));
}

TEST(JsonValues, AreTheClosestDecimals)
{
    const auto read = [](const QByteArray& number) {
        return dynamic_cast<DF_Params&>(*FromJson(frequency(number))).GetFrequency();
    };
    EXPECT_EQ(read("98.5"), 98.5);
    EXPECT_EQ(read("985e-1"), 98.5);
    EXPECT_EQ(read("1.7976931348623157e308"), std::numeric_limits<double>::max());
    EXPECT_TRUE(std::signbit(read("-0")));
    EXPECT_TRUE(std::signbit(read("-0.0")));
    EXPECT_FALSE(std::signbit(read("0.0")));
    EXPECT_TRUE(std::isnan(read("\"NaN\"")));
    EXPECT_EQ(read("\"Infinity\""), std::numeric_limits<double>::infinity());
    EXPECT_EQ(read("\"-Infinity\""), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(refusalOf(frequency("1e309")), text("1e309 is larger than any decimal."));
    EXPECT_EQ(refusalOf(frequency("-1e999999999999999999999")),
              text("-1e999999999999999999999 is larger than any decimal."));
    for (const QByteArray name : {"nan", "inf", "+Infinity", "Infinity ", "1", ""})
        EXPECT_TRUE(refusalOf(frequency('"' + name + '"')).contains(text("is no decimal")))
            << name.constData();
}

TEST(JsonValues, ReportDigitsThatADecimalCannotKeep)
{
    const auto entriesOf = [](const QByteArray& number) {
        const MODELKIT::ReadingReport report;
        FromJson(frequency(number));
        return report.GetEntries();
    };
    // The last ones are decimals written with all their digits.
    for (const char* number :
         {"0", "-0.0", "0.1", "98437000.125", "123456789012345", "0.10000000000000001", "5e-324", "1e22",
          "1.50000000000000000000000", "100000000000000000000000000000",
          "0.1000000000000000055511151231257827021181583404541015625"})
        EXPECT_TRUE(entriesOf(number).isEmpty()) << number;
    for (const char* number :
         {"9007199254740993", "98437000.123456789", "0.12345678901234567890", "1e-400", "-1e-400", "1.5e-324",
          "0.1000000000000000055511151231257827021181583404541015624"}) {
        const auto entries = entriesOf(number);
        ASSERT_EQ(entries.size(), 1) << number;
        EXPECT_EQ(entries.constFirst().kind, MODELKIT::ReadingReport::LostDecimals);
        EXPECT_EQ(entries.constFirst().place.path, text("$.DF_Params.Frequency"));
        EXPECT_EQ(entries.constFirst().place.line, 1);
        EXPECT_EQ(entries.constFirst().place.column, 29);
    }
    EXPECT_EQ(entriesOf("9007199254740993").constFirst().text,
              text("\"9007199254740993\" cannot be kept exactly and was taken for 9007199254740992."));
}

TEST(JsonValues, ReportNothingOfADocumentThatIsRefused)
{
    const MODELKIT::ReadingReport report;
    EXPECT_THROW(FromJson("{\"DF_Params\": {\"Frequency\": 9007199254740993, \"Bandwidth\": x}}"),
                 DocumentError);
    EXPECT_TRUE(report.GetEntries().isEmpty());
}

TEST(JsonValues, ReportNoMoreThanAReportKeeps)
{
    constexpr int more = 5;
    const QByteArray item = "{\"DF_Params\": {\"Frequency\": 9007199254740993}},\n";
    const QByteArray json = "{\"PelLu300RouterMessage\": {\"Fragment\": [\n"
                            + item.repeated(MODELKIT::ReadingReport::maximalEntries + more) + "{}]}}";
    const MODELKIT::ReadingReport report;
    FromJson(json);
    EXPECT_EQ(report.GetEntries().size(), MODELKIT::ReadingReport::maximalEntries);
    EXPECT_EQ(report.GetDropped(), more);
    EXPECT_EQ(report.GetEntries().constLast().place.line, MODELKIT::ReadingReport::maximalEntries + 1);
    FromJson(frequency("9007199254740993"));
    EXPECT_EQ(report.GetEntries().size(), MODELKIT::ReadingReport::maximalEntries);
    EXPECT_EQ(report.GetDropped(), more + 1);
}

} // namespace
