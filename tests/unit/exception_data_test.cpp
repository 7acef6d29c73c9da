// SPDX-License-Identifier: MIT
// The data of exceptions about enumerations: the offending value and the enumerator that is most like it.
#include "TestSupport.h"

#include <functional>
#include <type_traits>

using namespace testing_support;

namespace {

static_assert(std::is_nothrow_copy_constructible_v<OutOfRangeException>);
static_assert(std::is_nothrow_copy_assignable_v<OutOfRangeException>);
static_assert(noexcept(std::declval<const OutOfRangeException&>().GetOffendingValue()));
static_assert(noexcept(std::declval<const OutOfRangeException&>().GetClosest()));

const auto typeText = QStringLiteral("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)");
const auto stateText = QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state)");

// The exception that the statement throws, caught as the root of the exceptions, as tools do.
OutOfRangeException thrownBy(const std::function<void()>& statement)
{
    try {
        statement();
    } catch (const ModelKitException& exception) {
        if (const auto* outOfRange = dynamic_cast<const OutOfRangeException*>(&exception))
            return *outOfRange;
        ADD_FAILURE() << exception.what();
    }
    ADD_FAILURE() << "no OutOfRangeException was thrown";
    return OutOfRangeException(QString());
}

void expectData(const OutOfRangeException& exception, const QString& text, const QString& value,
                const QString& closest)
{
    EXPECT_EQ(exception.GetText(), text);
    EXPECT_EQ(exception.GetOffendingValue(), value);
    EXPECT_EQ(exception.GetOffendingValue().isNull(), value.isNull());
    EXPECT_EQ(exception.GetClosest(), closest);
}

template <class Record>
Record validated()
{
    Record record;
    record.SetValidate(true);
    return record;
}

QString messageXml(const QString& type)
{
    return QStringLiteral("<PelLu300RouterMessage><Type>%1</Type></PelLu300RouterMessage>").arg(type);
}

// The frame of a message whose Type is that text, from its length on.
QByteArray messageFrame(const QString& type)
{
    const QByteArray text = type.toUtf8();
    const auto size = static_cast<int>(text.size());
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << size + 12 << 0xE1D9E008U << size + 4 << (type.isNull() ? -1 : size);
    return bytes + text;
}

TEST(ExceptionData, nothingIsCarriedUnasked)
{
    expectData(OutOfRangeException(QStringLiteral("a text")), QStringLiteral("a text"), QString(), QString());
}

TEST(ExceptionData, copiesCarryTheData)
{
    auto source = std::make_unique<OutOfRangeException>(QStringLiteral("a text"), QStringLiteral("Replay"),
                                                        QStringLiteral("Reply"));
    const OutOfRangeException copy(*source);
    OutOfRangeException assigned(QStringLiteral("another"));
    assigned = *source;
    source.reset();
    expectData(copy, QStringLiteral("a text"), QStringLiteral("Replay"), QStringLiteral("Reply"));
    expectData(assigned, QStringLiteral("a text"), QStringLiteral("Replay"), QStringLiteral("Reply"));
    EXPECT_STREQ(copy.what(), "a text");
}

TEST(ExceptionData, ofASetterIsTheNumber)
{
    auto message = validated<PelLu300RouterMessage>();
    expectData(thrownBy([&] { message.SetType(static_cast<PelLu300RouterMessage::Type>(7)); }), typeText,
               QStringLiteral("7"), QString());
    auto state = validated<MastershipState>();
    expectData(thrownBy([&] { state.SetState(static_cast<MastershipState::State>(-1)); }), stateText,
               QStringLiteral("-1"), QString());
    EXPECT_FALSE(state.IsStateSet());
}

TEST(ExceptionData, ofReadingXmlIsTheNameThatWasRead)
{
    auto message = validated<PelLu300RouterMessage>();
    expectData(thrownBy([&] { readXml(message, messageXml(QStringLiteral("Replay"))); }), typeText,
               QStringLiteral("Replay"), QStringLiteral("Reply"));
    expectData(thrownBy([&] { readXml(message, messageXml(QStringLiteral("event"))); }), typeText,
               QStringLiteral("event"), QStringLiteral("Event"));
    expectData(thrownBy([&] { readXml(message, messageXml(QStringLiteral(" \u00DC "))); }), typeText,
               QStringLiteral(" \u00DC "), QString());
    expectData(thrownBy([&] { readXml(message, messageXml(empty())); }), typeText, empty(), QString());
    EXPECT_FALSE(message.IsTypeSet());

    // Operations on whole documents carry it too, and add the place.
    const auto exception =
        thrownBy([&] { message.SetXmlString(messageXml(QStringLiteral("Replay")), false); });
    expectData(exception, typeText, QStringLiteral("Replay"), QStringLiteral("Reply"));
    EXPECT_EQ(exception.GetPlace().path, QStringLiteral("/PelLu300RouterMessage/Type"));
}

TEST(ExceptionData, ofReadingBinaryIsTheNameThatWasRead)
{
    auto message = validated<PelLu300RouterMessage>();
    const auto read = [&message](const QString& type) {
        return thrownBy([&] { readFrame(message, messageFrame(type)); });
    };
    expectData(read(QStringLiteral("Replay")), typeText, QStringLiteral("Replay"), QStringLiteral("Reply"));
    expectData(read(QStringLiteral("\u00DCbung")), typeText, QStringLiteral("\u00DCbung"), QString());
    expectData(read(empty()), typeText, empty(), QString());
    expectData(read(QString()), typeText, QString(), QString());
    EXPECT_FALSE(message.IsTypeSet());
}

TEST(ExceptionData, ofAChangedInvalidValueIsStillTheName)
{
    auto state = validated<MastershipState>();
    state.SetInvalidState(static_cast<MastershipState::State>(9));
    const auto xml = QStringLiteral("<MastershipState><State>MasterPresen</State></MastershipState>");
    expectData(thrownBy([&] { readXml(state, xml); }), stateText, QStringLiteral("MasterPresen"),
               QStringLiteral("MasterPresent"));

    state.SetInvalidState(MastershipState::RouterIsMaster);
    readXml(state, xml);
    EXPECT_EQ(state.GetState(), MastershipState::RouterIsMaster);
}

TEST(ExceptionData, ofACheckIsTheNumberThatIsHeld)
{
    MastershipState state;
    state.SetState(static_cast<MastershipState::State>(3));
    expectData(thrownBy([&] { state.Check(); }),
               QStringLiteral("MastershipState: Please set State properly."), QStringLiteral("3"), QString());

    PelLu300RouterMessage message;
    const auto text = QStringLiteral("PelLu300RouterMessage: Please set Type properly.");
    expectData(thrownBy([&] { message.Check(); }), text, QString(), QString());
    message.SetType(static_cast<PelLu300RouterMessage::Type>(-2));
    expectData(thrownBy([&] { message.Check(); }), text, QStringLiteral("-2"), QString());
}

TEST(ExceptionData, ofAChoiceIsTheNumber)
{
    Fragment fragment;
    expectData(thrownBy([&] { fragment.InitChoice(static_cast<Fragment::ChoiceFragment>(-1)); }),
               QStringLiteral("Invalid enum value set in 'Fragment'."), QStringLiteral("-1"), QString());
}

TEST(ExceptionData, ofANullStringIsNothing)
{
    auto server = validated<PelVtConnectServer>();
    const auto text = QStringLiteral("PelVtConnectServer: Please set Address properly.");
    expectData(thrownBy([&] { server.SetAddress(QString()); }), text, QString(), QString());
    server.SetValidate(false);
    server.SetAddress(QString());
    expectData(thrownBy([&] { server.Check(); }), text, QString(), QString());
}

} // namespace
