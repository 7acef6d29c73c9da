// SPDX-License-Identifier: MIT
// The values that MemberInfo accepts for each kind of member. It stores no others.
#include "MemberByName.h"
#include "TestSupport.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QMetaType>
#include <QtCore/QVariant>

#include <cmath>
#include <limits>
#include <stdexcept>

using namespace testing_support;

namespace {

enum Answer : int
{
    No = 0,
    Yes = 1,
    Neither = -1
};

} // namespace

Q_DECLARE_METATYPE(Answer)

namespace {

const MemberInfo& number() { return member("PelLu300RouterMessage", "MessageID"); }
const MemberInfo& decimal() { return member("DF_Params", "Frequency"); }
const MemberInfo& boolean() { return member("AcquireMastership", "Success"); }
const MemberInfo& text() { return member("PelVtConnectServer", "Address"); }
const MemberInfo& enumeration() { return member("MastershipState", "State"); }

std::unique_ptr<MODELKIT::IMKObject> recordWith(const MemberInfo& member, bool validate)
{
    for (const RecordInfo* info : RecordInfo::All()) {
        if (!info->GetMembers().contains(&member))
            continue;
        auto record = info->Create();
        record->SetValidate(validate);
        return record;
    }
    return nullptr;
}

// A null QVariant of type int. No constructor makes one in all versions of Qt.
QVariant nullInt()
{
    QByteArray bytes;
    QDataStream(&bytes, QIODevice::WriteOnly) << quint32(QMetaType::Int) << qint8(1) << 0;
    QDataStream stream(bytes);
    QVariant variant;
    stream >> variant;
    return variant;
}

bool isSame(const QVariant& a, const QVariant& b)
{
    return a == b && a.toString().isNull() == b.toString().isNull();
}

// Expects that the value is accepted, as the current one and as the default.
void expectTaken(const MemberInfo& member, const QVariant& value, const QVariant& stored)
{
    SCOPED_TRACE(value.toString().toStdString() + " as " + member.GetName().toStdString());
    for (const bool validate : {false, true}) {
        const auto record = recordWith(member, validate);
        member.SetValue(*record, value);
        EXPECT_TRUE(isSame(member.GetValue(*record), stored))
            << member.GetValue(*record).toString().toStdString();
        EXPECT_EQ(member.GetValue(*record).userType(), stored.userType());
        EXPECT_TRUE(member.IsSet(*record));
        EXPECT_FALSE(member.IsDefaultSet(*record));

        member.Reset(*record);
        member.SetDefault(*record, value);
        EXPECT_TRUE(isSame(member.GetDefault(*record), stored));
        EXPECT_TRUE(member.IsDefaultSet(*record));
        EXPECT_FALSE(member.IsSet(*record));
    }
    EXPECT_TRUE(member.IsValid(value));
}

template <class Statement>
void expectRefusal(const Statement& statement, const QString& text, const QString& offendingValue,
                   const QString& closest)
{
    try {
        statement();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const OutOfRangeException& exception) {
        EXPECT_EQ(exception.GetText(), text);
        EXPECT_EQ(exception.GetOffendingValue(), offendingValue);
        EXPECT_EQ(exception.GetOffendingValue().isNull(), offendingValue.isNull());
        EXPECT_EQ(exception.GetClosest(), closest);
    }
}

// Expects that the value is refused, whether validation is on or off, and that nothing changes.
void expectRefused(const MemberInfo& member, const QVariant& value, const QVariant& kept, const QString& text,
                   const QString& offendingValue, const QString& closest = QString())
{
    SCOPED_TRACE(text.toStdString());
    for (const bool validate : {false, true}) {
        const auto record = recordWith(member, validate);
        expectRefusal([&] { member.SetValue(*record, value); }, text, offendingValue, closest);
        expectRefusal([&] { member.SetDefault(*record, value); }, text, offendingValue, closest);
        EXPECT_FALSE(member.IsSet(*record));
        EXPECT_FALSE(member.IsDefaultSet(*record));
        EXPECT_TRUE(isSame(member.GetValue(*record), member.GetValue(*RecordInfo::Of(*record).Create())));

        member.SetValue(*record, kept);
        member.SetDefault(*record, kept);
        expectRefusal([&] { member.SetValue(*record, value); }, text, offendingValue, closest);
        expectRefusal([&] { member.SetDefault(*record, value); }, text, offendingValue, closest);
        EXPECT_TRUE(isSame(member.GetValue(*record), kept));
        EXPECT_TRUE(isSame(member.GetDefault(*record), kept));
        EXPECT_TRUE(member.IsSet(*record));
    }
    EXPECT_FALSE(member.IsValid(value));
}

void expectNoNumber(const QVariant& value, const QString& shown, const QString& offendingValue)
{
    expectRefused(number(), value, 7U,
                  QStringLiteral("PelLu300RouterMessage: ") + shown
                      + QStringLiteral(" is no value of MessageID, which must be a whole number from 0 to "
                                       "4294967295."),
                  offendingValue);
}
void expectNoNumber(const QVariant& value, const QString& offendingValue)
{
    expectNoNumber(value, QLatin1Char('"') + offendingValue + QLatin1Char('"'), offendingValue);
}
void expectNoNumber(const char* value) { expectNoNumber(QString::fromUtf8(value), QString::fromUtf8(value)); }

TEST(RecordValues, numbersAreWholeAndFit)
{
    expectTaken(number(), 0, 0U);
    expectTaken(number(), 4294967295U, 4294967295U);
    expectTaken(number(), 4294967295LL, 4294967295U);
    expectTaken(number(), 4294967295ULL, 4294967295U);
    expectTaken(number(), QVariant::fromValue<unsigned long>(5), 5U);
    expectTaken(number(), QVariant::fromValue<long>(5), 5U);
    expectTaken(number(), QVariant::fromValue<unsigned short>(65535), 65535U);
    expectTaken(number(), QVariant::fromValue<short>(5), 5U);
    expectTaken(number(), QVariant::fromValue<signed char>(5), 5U);
    expectTaken(number(), QVariant::fromValue<unsigned char>(255), 255U);
    expectTaken(number(), QVariant::fromValue(Yes), 1U);
    expectTaken(number(), 4294967295.0, 4294967295U);
    expectTaken(number(), 5.0F, 5U);
    expectTaken(number(), -0.0, 0U);

    expectNoNumber(-1, QStringLiteral("-1"));
    expectNoNumber(4294967296LL, QStringLiteral("4294967296"));
    expectNoNumber(70000000000LL, QStringLiteral("70000000000"));
    expectNoNumber(std::numeric_limits<quint64>::max(), QStringLiteral("18446744073709551615"));
    expectNoNumber(std::numeric_limits<qint64>::min(), QStringLiteral("-9223372036854775808"));
    expectNoNumber(1.5, QStringLiteral("1.5"));
    expectNoNumber(-1.0, QStringLiteral("-1"));
    expectNoNumber(4294967296.0, QStringLiteral("4294967296"));
    expectNoNumber(1e300, QStringLiteral("1e+300"));
    expectNoNumber(std::nan(""), QStringLiteral("nan"));
    expectNoNumber(HUGE_VAL, QStringLiteral("inf"));
    expectNoNumber(true, QStringLiteral("true"));
}

TEST(RecordValues, aNumberOfAnotherEnumerationMustFit)
{
    const auto record = recordWith(number(), false);
    EXPECT_THROW(number().SetValue(*record, QVariant::fromValue(Neither)), OutOfRangeException);
    EXPECT_FALSE(number().IsSet(*record));
}

TEST(RecordValues, numbersAsTextAreDigits)
{
    expectTaken(number(), QStringLiteral("0"), 0U);
    expectTaken(number(), QStringLiteral("007"), 7U);
    expectTaken(number(), QStringLiteral("4294967295"), 4294967295U);
    expectTaken(number(), QByteArray("42"), 42U);

    for (const char* refused :
         {"", "-1", "+5", " 5", "5 ", "1e3", "0x10", "1.0", "1.5", "4294967296", "70000000000",
          "18446744073709551617", "abc", "5\n", "1,000", "true", "\xD9\xA5"})
        expectNoNumber(refused);
    expectNoNumber(QByteArray("5\0", 2), QString(QLatin1String("5\0", 2)));
    // The message shows only the beginning of a long text, but the data has all of it.
    const QString digits(50, QLatin1Char('1'));
    expectNoNumber(digits, QLatin1Char('"') + digits.left(40) + QStringLiteral("...\""), digits);
}

TEST(RecordValues, whatHoldsNoNumberIsRefused)
{
    ASSERT_TRUE(nullInt().isNull());
    ASSERT_EQ(nullInt().userType(), int(QMetaType::Int));
    expectNoNumber(QVariant(), QStringLiteral("An invalid QVariant"), QString());
    expectNoNumber(nullInt(), QStringLiteral("A QVariant of type int without text"), QString());
    expectNoNumber(QString(), QStringLiteral("A QVariant of type QString without text"), QString());
    expectNoNumber(QByteArray(), QStringLiteral("A QVariant of type QByteArray without text"), QString());
    expectNoNumber(QVariantList{5}, QStringLiteral("A QVariant of type QVariantList without text"),
                   QString());
}

void expectNoDecimal(const QVariant& value, const QString& offendingValue)
{
    const QString shown = QLatin1Char('"') + offendingValue + QLatin1Char('"');
    expectRefused(
        decimal(), value, 7.5,
        QStringLiteral("DF_Params: %1 is no value of Frequency, which must be a number.").arg(shown),
        offendingValue);
}

TEST(RecordValues, decimalsAreNumbers)
{
    expectTaken(decimal(), 98500000.125, 98500000.125);
    expectTaken(decimal(), 0.5F, 0.5);
    expectTaken(decimal(), -3, -3.0);
    expectTaken(decimal(), 4294967295U, 4294967295.0);
    expectTaken(decimal(), 9007199254740992LL, 9007199254740992.0);
    expectTaken(decimal(), -9007199254740992LL, -9007199254740992.0);
    expectTaken(decimal(), HUGE_VAL, HUGE_VAL);
    expectTaken(decimal(), QStringLiteral("0.1"), 0.1);
    expectTaken(decimal(), QStringLiteral("-1e3"), -1000.0);
    expectTaken(decimal(), QStringLiteral("+5"), 5.0);
    expectTaken(decimal(), QStringLiteral("inf"), HUGE_VAL);
    expectTaken(decimal(), QStringLiteral("-inf"), -HUGE_VAL);
    expectTaken(decimal(), QByteArray("2.5"), 2.5);

    for (const QVariant& nan : {QVariant(std::nan("")), QVariant(QStringLiteral("nan"))}) {
        DF_Params params;
        decimal().SetValue(params, nan);
        EXPECT_TRUE(std::isnan(params.GetFrequency()));
        EXPECT_TRUE(params.IsFrequencySet());
        EXPECT_TRUE(decimal().IsValid(nan));
    }
}

TEST(RecordValues, whatIsNoDecimalIsRefused)
{
    for (const char* refused : {"", "abc", "0x10", "1.5abc", "1,5", "1,000.5", " 5", "5 ", "1e999", "--1"})
        expectNoDecimal(QString::fromLatin1(refused), QString::fromLatin1(refused));
    expectNoDecimal(true, QStringLiteral("true"));
    expectNoDecimal(9007199254740993LL, QStringLiteral("9007199254740993"));
    expectNoDecimal(-9007199254740993LL, QStringLiteral("-9007199254740993"));
    expectNoDecimal(std::numeric_limits<quint64>::max(), QStringLiteral("18446744073709551615"));
    expectRefused(decimal(), QVariant(), 7.5,
                  QStringLiteral("DF_Params: An invalid QVariant is no value of Frequency, which must be a "
                                 "number."),
                  QString());
}

void expectNoBoolean(const QVariant& value, const QString& offendingValue)
{
    const QString shown = QLatin1Char('"') + offendingValue + QLatin1Char('"');
    expectRefused(boolean(), value, true,
                  QStringLiteral("AcquireMastership: %1 is no value of Success, which must be true or false.")
                      .arg(shown),
                  offendingValue);
}

TEST(RecordValues, booleansAreTrueAndFalse)
{
    expectTaken(boolean(), true, true);
    expectTaken(boolean(), false, false);
    expectTaken(boolean(), 1, true);
    expectTaken(boolean(), 0, false);
    expectTaken(boolean(), 1.0, true);
    expectTaken(boolean(), QStringLiteral("true"), true);
    expectTaken(boolean(), QStringLiteral("false"), false);
    expectTaken(boolean(), QStringLiteral("1"), true);
    expectTaken(boolean(), QStringLiteral("0"), false);
    expectTaken(boolean(), QByteArray("true"), true);

    for (const char* refused : {"", "nonsense", "True", "FALSE", "yes", " true", "2", "00", "01"})
        expectNoBoolean(QString::fromLatin1(refused), QString::fromLatin1(refused));
    expectNoBoolean(2, QStringLiteral("2"));
    expectNoBoolean(-1, QStringLiteral("-1"));
    expectNoBoolean(0.5, QStringLiteral("0.5"));
    expectRefused(boolean(), QVariant(), true,
                  QStringLiteral("AcquireMastership: An invalid QVariant is no value of Success, which must "
                                 "be true or false."),
                  QString());
}

TEST(RecordValues, textsAreTexts)
{
    expectTaken(text(), QStringLiteral("h\u00F6st"), QStringLiteral("h\u00F6st"));
    expectTaken(text(), empty(), empty());
    expectTaken(text(), QByteArray("h\xC3\xB6st"), QStringLiteral("h\u00F6st"));
    expectTaken(text(), QByteArray(""), empty());
    expectTaken(text(), QByteArray("a\0b", 3), QString(QLatin1String("a\0b", 3)));

    const auto refusal = [](const QString& shown) {
        return QStringLiteral("PelVtConnectServer: %1 is no value of Address, which must be a text.")
            .arg(shown);
    };
    const auto kept = QStringLiteral("kept");
    expectRefused(text(), 42, kept, refusal(QStringLiteral("\"42\"")), QStringLiteral("42"));
    expectRefused(text(), 1.5, kept, refusal(QStringLiteral("\"1.5\"")), QStringLiteral("1.5"));
    expectRefused(text(), true, kept, refusal(QStringLiteral("\"true\"")), QStringLiteral("true"));
    expectRefused(text(), QByteArray("\xFF"), kept, refusal(QStringLiteral("\"\uFFFD\"")),
                  QStringLiteral("\uFFFD"));
    expectRefused(text(), QVariant(), kept, refusal(QStringLiteral("An invalid QVariant")), QString());
}

TEST(RecordValues, aNullTextFollowsTheRuleOfTheSetter)
{
    for (const QVariant& null : {QVariant(QString()), QVariant(QByteArray())}) {
        PelVtConnectServer server;
        text().SetValue(server, QStringLiteral("kept"));
        server.SetValidate(true);
        expectThrow<OutOfRangeException>([&] { text().SetValue(server, null); },
                                         QStringLiteral("PelVtConnectServer: Please set Address properly."));
        EXPECT_EQ(server.GetAddress(), QStringLiteral("kept"));
        EXPECT_FALSE(text().IsValid(null));

        server.SetValidate(false);
        text().SetValue(server, null);
        EXPECT_TRUE(server.IsAddressSet());
        EXPECT_TRUE(server.GetAddress().isNull());

        server.SetDefaultAddress(QStringLiteral("standard"));
        text().SetDefault(server, null);
        EXPECT_TRUE(server.GetDefaultAddress().isNull());
    }
}

void expectNoEnumerator(const QVariant& value, const QString& offendingValue, const QString& closest)
{
    expectRefused(enumeration(), value, 1,
                  QStringLiteral("MastershipState: \"%1\" is no value of State, which must be one of "
                                 "NoMasterPresent, MasterPresent, RouterIsMaster.")
                      .arg(offendingValue),
                  offendingValue, closest);
}

TEST(RecordValues, enumeratorsAreTakenByNameOrNumber)
{
    expectTaken(enumeration(), QStringLiteral("NoMasterPresent"), 0);
    expectTaken(enumeration(), QStringLiteral("RouterIsMaster"), 2);
    expectTaken(enumeration(), QByteArray("MasterPresent"), 1);
    expectTaken(enumeration(), 2, 2);
    expectTaken(enumeration(), 2U, 2);
    expectTaken(enumeration(), 2LL, 2);
    expectTaken(enumeration(), QVariant::fromValue<short>(2), 2);
    expectTaken(enumeration(), QVariant::fromValue(Yes), 1);
    expectTaken(member("PelLu300RouterMessage", "Type"), QStringLiteral("Reply"), 1);

    expectNoEnumerator(QStringLiteral("Nonsense"), QStringLiteral("Nonsense"), QString());
    expectNoEnumerator(QStringLiteral("MasterPresens"), QStringLiteral("MasterPresens"),
                       QStringLiteral("MasterPresent"));
    expectNoEnumerator(QStringLiteral("routerismaster"), QStringLiteral("routerismaster"),
                       QStringLiteral("RouterIsMaster"));
    expectNoEnumerator(QStringLiteral(" RouterIsMaster"), QStringLiteral(" RouterIsMaster"),
                       QStringLiteral("RouterIsMaster"));
    expectNoEnumerator(empty(), QString::fromLatin1(""), QString());
    expectNoEnumerator(QStringLiteral("1"), QStringLiteral("1"), QString());
    expectNoEnumerator(true, QStringLiteral("true"), QString());
    expectNoEnumerator(1.5, QStringLiteral("1.5"), QString());
    expectNoEnumerator(2147483648LL, QStringLiteral("2147483648"), QString());
    expectNoEnumerator(-2147483649LL, QStringLiteral("-2147483649"), QString());
    expectNoEnumerator(4294967297LL, QStringLiteral("4294967297"), QString());
    expectRefused(enumeration(), QVariant(), 1,
                  QStringLiteral("MastershipState: An invalid QVariant is no value of State, which must be "
                                 "one of NoMasterPresent, MasterPresent, RouterIsMaster."),
                  QString());
}

TEST(RecordValues, anUnknownNameIsNotTheInvalidValue)
{
    MastershipState state;
    state.SetInvalidState(MastershipState::MasterPresent);
    EXPECT_THROW(enumeration().SetValue(state, QStringLiteral("Nonsense")), OutOfRangeException);
    EXPECT_FALSE(state.IsStateSet());
}

TEST(RecordValues, aNumberOutsideTheEnumeratorsFollowsTheRuleOfTheSetter)
{
    for (const int outside : {3, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        EXPECT_FALSE(enumeration().IsValid(outside));
        MastershipState state;
        enumeration().SetValue(state, outside);
        EXPECT_EQ(int(state.GetState()), outside);
        EXPECT_TRUE(state.IsStateSet());

        state.SetState(MastershipState::RouterIsMaster);
        state.SetValidate(true);
        expectRefusal([&] { enumeration().SetValue(state, outside); },
                      QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state)"),
                      QString::number(outside), QString());
        EXPECT_EQ(state.GetState(), MastershipState::RouterIsMaster);

        // No rule is applied to a default, as in the record's own operation.
        enumeration().SetDefault(state, outside);
        EXPECT_EQ(int(state.GetDefaultState()), outside);
    }
}

TEST(RecordValues, theTextNamesTheRecordAsItCallsItself)
{
    struct Renamed : OstraInterfacePort
    {
        Renamed() { SetObjectName(QStringLiteral("Other %1")); }
    } renamed;
    expectRefusal([&] { member("OstraInterfacePort", "Port").SetValue(renamed, QStringLiteral("%2 %3")); },
                  QStringLiteral("Other %1: \"%2 %3\" is no value of Port, which must be a whole number from "
                                 "0 to 4294967295."),
                  QStringLiteral("%2 %3"), QString());
}

TEST(RecordValues, otherKindsHoldNoValue)
{
    Fragment fragment;
    const MemberInfo& nested = member("Fragment", "DF_Params");
    EXPECT_THROW(nested.IsValid(1), std::logic_error);
    EXPECT_THROW(nested.GetDefault(fragment), std::logic_error);
    EXPECT_THROW(nested.SetDefault(fragment, 1), std::logic_error);
    EXPECT_THROW(member("PelLu300RouterMessage", "Fragment").IsValid(1), std::logic_error);
    EXPECT_FALSE(nested.IsSet(fragment));
    EXPECT_FALSE(nested.IsDefaultSet(fragment));
}

} // namespace
