// SPDX-License-Identifier: MIT
// Binary input that no program wrote on purpose: whatever the bytes, reading soon succeeds or throws one of
// the library's exceptions, and the record can still be used.
#include "BinarySupport.h"

#include <array>
#include <iterator>
#include <random>
#include <vector>

namespace {

using namespace binary_support;

enum class Outcome
{
    Read,
    Refused
};

// Expects that the record can be written, and that reading and writing the result again changes nothing.
template <class R>
void expectUsable(const R& record, const QByteArray& origin)
{
    record.SetValidate(false);
    const QByteArray written = frameOf(record);
    R again;
    readFrame(again, written);
    EXPECT_EQ(frameOf(again), written) << "read from " << origin.toHex().constData();
}

// Reads content, announced as length bytes. Any exception except an MKException fails the test.
template <class R>
Outcome tryToRead(const QByteArray& content, int length, bool validate)
{
    R record;
    record.SetValidate(validate);
    QDataStream stream(content);
    Outcome outcome = Outcome::Read;
    try {
        record.SetBinary(stream, length);
    } catch (const MKException& exception) {
        EXPECT_FALSE(exception.GetText().isEmpty());
        outcome = Outcome::Refused;
    }
    EXPECT_LE(stream.device()->pos(), content.size());
    if (outcome == Outcome::Read) {
        // A successful reading consumes exactly the announced length.
        EXPECT_EQ(stream.device()->pos(), length) << content.toHex().constData();
    }
    expectUsable(record, content);
    return outcome;
}

struct Outcomes
{
    int read = 0;
    int refused = 0;

    void add(Outcome outcome) { ++(outcome == Outcome::Read ? read : refused); }
};

// Reads the frame once for each byte and each pattern of changed bits in it.
template <class R, class Patterns>
Outcomes readDamaged(const QByteArray& frame, const Patterns& patterns)
{
    Outcomes outcomes;
    for (int at = 0; at < frame.size(); ++at) {
        for (const int pattern : patterns) {
            QByteArray damaged = frame;
            damaged[at] = static_cast<char>(damaged.at(at) ^ pattern);
            QDataStream stream(damaged);
            int length = 0;
            stream >> length;
            for (const bool validate : {false, true})
                outcomes.add(tryToRead<R>(damaged.mid(4), length, validate));
        }
    }
    return outcomes;
}

constexpr std::array<int, 9> bitPatterns = {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0xFF};

template <class R>
class HostileBinaryOfEveryRecord : public ::testing::Test
{
};
TYPED_TEST_SUITE(HostileBinaryOfEveryRecord, RecordsWithSamples);

TYPED_TEST(HostileBinaryOfEveryRecord, WithOneByteChangedToAnyOtherIsReadOrRefused)
{
    std::vector<int> allPatterns;
    for (int pattern = 1; pattern < 256; ++pattern)
        allPatterns.push_back(pattern);
    const Outcomes outcomes = readDamaged<TypeParam>(bytes(Sample<TypeParam>::frame), allPatterns);
    EXPECT_GT(outcomes.read, 0);
    EXPECT_GT(outcomes.refused, 0);
}

TYPED_TEST(HostileBinaryOfEveryRecord, OfRandomBytesIsReadOrRefused)
{
    std::mt19937 random(20011);
    Outcomes outcomes;
    for (int round = 0; round < 3000; ++round) {
        QByteArray content(static_cast<int>(random() % 64), '\0');
        for (char& byte : content)
            byte = static_cast<char>(random() & 0xFFU);
        outcomes.add(tryToRead<TypeParam>(content, static_cast<int>(content.size()), round % 2 == 0));
        outcomes.add(tryToRead<TypeParam>(content, static_cast<int>(random()), round % 2 == 0));
    }
    EXPECT_GT(outcomes.refused, 3000);
}

// Random content of valid parts with mostly right lengths and counts, so that reading gets deep into every
// record.
class Generator
{
public:
    explicit Generator(unsigned int seed) : m_random(seed) {}

    QByteArray entries(int depth)
    {
        QByteArray content;
        for (int count = below(4); count > 0; --count)
            content += oneEntry(depth);
        return content;
    }

    bool chance(int percent) { return below(100) < percent; }

private:
    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned int>(limit)); }

    std::uint32_t hostileNumber()
    {
        static constexpr std::uint32_t numbers[] = {
            0,       1,          3,          4,          7,          8,          9,         255,
            0x10000, 0x7FFFFFFF, 0x80000000, 0x80000007, 0xFFFFFFF8, 0xFFFFFFFE, 0xFFFFFFFF};
        return numbers[below(static_cast<int>(std::size(numbers)))];
    }

    QByteArray length(const QByteArray& content)
    {
        return word(chance(97) ? sizeOf(content) : hostileNumber());
    }

    QByteArray randomText()
    {
        static const QByteArray texts[] = {
            "",    "Request", "Reply", "Event",    "MasterPresent",    "1.50", "-3", "nan",
            "inf", "1e300",   "x",     "\xFF\xC3", QByteArray("\0", 1)};
        const QByteArray& content = texts[below(static_cast<int>(std::size(texts)))];
        return length(content) + content;
    }

    QByteArray elements(int depth)
    {
        QByteArray content;
        const int count = below(4);
        for (int i = 0; i < count; ++i) {
            const QByteArray element = entries(depth - 1);
            content += length(element) + element;
        }
        return word(chance(97) ? static_cast<std::uint32_t>(count) : hostileNumber()) + content;
    }

    QByteArray payload(std::uint32_t tag, int depth)
    {
        switch (tag) {
        case portTag:
        case messageIdTag:
            return word(hostileNumber()) + word(hostileNumber());
        case successTag:
            return QByteArray(1, static_cast<char>(below(256)));
        case fragmentTag:
            return depth > 0 ? elements(depth) : word(0);
        case unknownTag:
            return QByteArray(below(20), '\x01');
        case messageTag:
        case mastershipStateTag:
        case acquireMastershipTag:
        case releaseMastershipTag:
        case ostraInterfacePortTag:
        case pelVtConnectServerTag:
        case routerVtServerPortTag:
        case dfParamsTag:
            return depth > 0 ? entries(depth - 1) : QByteArray();
        default:
            return randomText();
        }
    }

    QByteArray oneEntry(int depth)
    {
        static constexpr std::uint32_t tags[] = {messageTag,
                                                 typeTag,
                                                 messageIdTag,
                                                 fragmentTag,
                                                 fragmentTag,
                                                 mastershipStateTag,
                                                 acquireMastershipTag,
                                                 releaseMastershipTag,
                                                 ostraInterfacePortTag,
                                                 pelVtConnectServerTag,
                                                 routerVtServerPortTag,
                                                 dfParamsTag,
                                                 stateTag,
                                                 masterClientIdTag,
                                                 successTag,
                                                 portTag,
                                                 addressTag,
                                                 frequencyTag,
                                                 demodulationFrequencyTag,
                                                 bandwidthTag,
                                                 panoramaSpanTag,
                                                 unknownTag};
        const std::uint32_t tag = tags[below(static_cast<int>(std::size(tags)))];
        const QByteArray content = payload(tag, depth);
        return word(tag) + length(content) + content;
    }

    std::mt19937 m_random;
};

TYPED_TEST(HostileBinaryOfEveryRecord, PutTogetherAtRandomIsReadOrRefused)
{
    Generator generator(977);
    Outcomes outcomes;
    for (int round = 0; round < 4000; ++round) {
        const QByteArray content = generator.entries(4);
        outcomes.add(tryToRead<TypeParam>(content, static_cast<int>(content.size()), round % 2 == 0));
    }
    EXPECT_GT(outcomes.read, 1000);
    EXPECT_GT(outcomes.refused, 100);
}

TYPED_TEST(HostileBinaryOfEveryRecord, OfUnknownEntriesWithNegativeLengthsEndsAtTheEndOfTheStream)
{
    for (const std::uint32_t length : {0x80000000U, 0xFFFFFFF0U, 0xFFFFFFF8U}) {
        QByteArray content;
        for (int i = 0; i < 20000; ++i)
            content += word(unknownTag) + word(length);
        TypeParam record;
        QDataStream stream(content);
        EXPECT_THROW(record.SetBinary(stream, 16), BinaryParsingException);
        EXPECT_TRUE(stream.atEnd());
        EXPECT_FALSE(record.AnyData());
    }
}

// Each header takes eight bytes of the length and gives one back. The third header uses the length up.
TYPED_TEST(HostileBinaryOfEveryRecord, OfUnknownEntriesWithTheLengthMinusOneEndsWhenTheLengthIsUsedUp)
{
    QByteArray content;
    for (int i = 0; i < 20; ++i)
        content += word(unknownTag) + word(0xFFFFFFFF);
    for (const int length : {16, 21}) {
        TypeParam record;
        QDataStream stream(content);
        expectThrow<BinaryParsingException>([&] { record.SetBinary(stream, length); },
                                            lengthErrorOf(Sample<TypeParam>::name));
        EXPECT_EQ(stream.device()->pos(), 24);
    }
}

// The lengths add up only if the sums overflow 32 bits.
TYPED_TEST(HostileBinaryOfEveryRecord, WhoseLengthsOnlyAgreeModuloTheWordSizeIsRefused)
{
    TypeParam record;
    const QByteArray content =
        word(unknownTag) + word(0x80000000) + word(unknownTag) + word(0x7FFFFFF8) + QByteArray(64, '\0');
    QDataStream stream(content);
    EXPECT_THROW(record.SetBinary(stream, 8), BinaryParsingException);
}

TYPED_TEST(HostileBinaryOfEveryRecord, WithTheLargestLengthEverywhereIsRefused)
{
    TypeParam record;
    QDataStream stream(word(unknownTag) + word(0x7FFFFFFF) + QByteArray(64, '\0'));
    EXPECT_THROW(record.SetBinary(stream, 0x7FFFFFFF), BinaryParsingException);
    EXPECT_TRUE(stream.atEnd());
}

TEST(HostileBinaryDocument, WithOneByteDamagedIsReadOrRefused)
{
    const Outcomes outcomes = readDamaged<PelLu300RouterInterfaceXml>(fullDocumentFrame(), bitPatterns);
    EXPECT_GT(outcomes.read, 0);
    EXPECT_GT(outcomes.refused, 0);
}

TEST(HostileBinaryDocument, WithAWordReplacedIsReadOrRefused)
{
    const QByteArray whole = fullDocumentFrame();
    Outcomes outcomes;
    for (int at = 4; at + 4 <= whole.size(); ++at) {
        for (const std::uint32_t value :
             {0U, 0x7FFFFFFFU, 0x7FFFFFFEU, 0x80000000U, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
            QByteArray damaged = whole;
            damaged.replace(at, 4, word(value));
            for (const bool validate : {false, true})
                outcomes.add(tryToRead<PelLu300RouterInterfaceXml>(
                    damaged.mid(4), static_cast<int>(damaged.size()) - 4, validate));
        }
    }
    EXPECT_GT(outcomes.read, 0);
    EXPECT_GT(outcomes.refused, 0);
}

TEST(HostileBinaryDocument, WithTwoPartsExchangedIsReadOrRefused)
{
    const QByteArray whole = fullDocumentFrame();
    std::mt19937 random(5);
    Outcomes outcomes;
    for (int round = 0; round < 2000; ++round) {
        const auto below = [&random](qint64 limit) {
            return static_cast<int>(random() % static_cast<std::uint32_t>(limit));
        };
        const int size = 1 + below(24);
        const int from = 4 + below(whole.size() - 4 - size);
        const int to = 4 + below(whole.size() - 4 - size);
        QByteArray damaged = whole;
        damaged.replace(to, size, whole.mid(from, size));
        outcomes.add(tryToRead<PelLu300RouterInterfaceXml>(
            damaged.mid(4), static_cast<int>(damaged.size()) - 4, round % 2 == 0));
    }
    EXPECT_GT(outcomes.refused, 0);
}

TEST(HostileBinaryList, WithAHugeCountOnAShortStreamEndsAtOnce)
{
    for (const std::uint32_t length : {4U, 8U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        for (const std::uint32_t count : {0x7FFFFFFFU, 0x7FFFFFFEU, 0x10000000U}) {
            PelLu300RouterMessage message;
            QDataStream stream(word(fragmentTag) + word(length) + word(count) + word(0) + word(0));
            EXPECT_THROW(message.SetBinary(stream, 0x7FFFFFFF), BinaryParsingException);
            EXPECT_EQ(message.GetFragment().size(), 2);
            EXPECT_LT(message.GetFragment().capacity(), 100);
            EXPECT_TRUE(stream.atEnd());
        }
    }
}

TEST(HostileBinaryList, WithAHugeCountOnADeviceThatOnlyGoesForwardsEndsAtOnce)
{
    PelLu300RouterMessage message;
    ForwardDevice device(word(fragmentTag) + word(0x7FFFFFFF) + word(0x7FFFFFFF) + word(0));
    QDataStream stream(&device);
    EXPECT_THROW(message.SetBinary(stream, 0x7FFFFFFF), BinaryParsingException);
    EXPECT_EQ(message.GetFragment().size(), 1);
    EXPECT_LT(message.GetFragment().capacity(), 100);
}

TEST(HostileBinaryList, OfManyListsWithHugeCountsKeepsItsCapacitySmall)
{
    // Each list fails. The memory that the lists reserve must not add up.
    PelLu300RouterMessage message;
    const QByteArray content = word(fragmentTag) + word(0x7FFFFFFF) + word(0x7FFFFFFF);
    for (int i = 0; i < 1000; ++i) {
        QDataStream stream(content + word(0));
        EXPECT_THROW(message.SetBinary(stream, 0x7FFFFFFF), BinaryParsingException);
    }
    EXPECT_EQ(message.GetFragment().size(), 1000);
    EXPECT_LT(message.GetFragment().capacity(), 10000);
}

TEST(HostileBinaryText, LongerThanTheStreamIsRefusedAndKeepsTheOldOne)
{
    for (const std::uint32_t count :
         {0x7FFFFFFEU, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFEU, 0x00100001U, 0x00200000U, 5U}) {
        for (const bool validate : {false, true}) {
            PelVtConnectServer server;
            server.SetAddress(QStringLiteral("old"));
            server.SetValidate(validate);
            expectLengthError(server, frame(entry(addressTag, word(count) + QByteArray(4, 'x'))),
                              "PelVtConnectServer");
            EXPECT_EQ(server.GetAddress(), QStringLiteral("old"));

            MastershipState state;
            state.SetValidate(validate);
            expectLengthError(state, frame(entry(stateTag, word(count) + QByteArray(4, 'x'))),
                              "MastershipState");
            EXPECT_FALSE(state.IsStateSet());

            DF_Params tuning;
            tuning.SetFrequency(1);
            tuning.SetValidate(validate);
            expectLengthError(tuning, frame(entry(frequencyTag, word(count) + QByteArray(4, '1'))),
                              "DF_Params");
            EXPECT_EQ(tuning.GetFrequency(), 1);
        }
    }
}

TEST(HostileBinaryText, LongerThanADeviceThatOnlyGoesForwardsIsRefused)
{
    for (const std::uint32_t count : {0x7FFFFFFEU, 0x80000000U, 0xFFFFFFFEU}) {
        PelVtConnectServer server;
        ForwardDevice device(word(addressTag) + word(0x7FFFFFFF) + word(count) + QByteArray(2000000, 'x'));
        QDataStream stream(&device);
        EXPECT_THROW(server.SetBinary(stream, 0x7FFFFFFF), BinaryParsingException);
        EXPECT_FALSE(server.IsAddressSet());
    }
}

// Reading hands the settings down to the existing records. If it did so for every entry, these documents
// would take minutes.
TEST(HostileBinaryDocument, WithManyMessagesBehindALongListIsReadWhole)
{
    QByteArray elements;
    for (int i = 0; i < 2000; ++i)
        elements += bytes(Sample<Fragment>::frame);
    QByteArray content = entry(messageTag, entry(fragmentTag, list(2000, elements)));
    for (int i = 0; i < 20000; ++i)
        content += entry(messageTag, QByteArray());
    for (const bool validate : {false, true}) {
        PelLu300RouterInterfaceXml document;
        document.SetValidate(validate);
        readFrame(document, frame(content));
        EXPECT_EQ(document.GetPelLu300RouterMessage().GetFragment().size(), 2000);
    }
}

TEST(HostileBinaryDocument, WithManyMessagesOfOneItemEachIsReadWhole)
{
    QByteArray content;
    for (std::uint32_t i = 0; i < 20000; ++i)
        content +=
            entry(messageTag, entry(fragmentTag, list(1, frame(entry(ostraInterfacePortTag, portEntry(i))))));
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    readFrame(document, frame(content));
    const QVector<Fragment>& items = document.GetPelLu300RouterMessage().GetFragment();
    ASSERT_EQ(items.size(), 20000);
    for (const int at : {0, 1, 9999, 19999})
        EXPECT_EQ(items.at(at).GetOstraInterfacePort().GetPort(), static_cast<unsigned int>(at));
}

TEST(HostileBinaryDocument, WithManyEmptyListsBehindALongOneIsReadWhole)
{
    QByteArray content = entry(fragmentTag, list(2000, QByteArray(8000, '\0')));
    for (int i = 0; i < 20000; ++i)
        content += entry(fragmentTag, list(0, QByteArray()));
    PelLu300RouterMessage message;
    readFrame(message, frame(content));
    EXPECT_EQ(message.GetFragment().size(), 2000);
}

TEST(HostileBinaryFragment, ThatChangesItsChoiceManyTimesIsReadWhole)
{
    QByteArray content;
    for (std::uint32_t i = 0; i < 20000; ++i)
        content += entry(ostraInterfacePortTag, portEntry(i)) + entry(acquireMastershipTag, QByteArray());
    Fragment fragment;
    readFrame(fragment, frame(content));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::AcquireMastership);
    EXPECT_EQ(static_cast<const Fragment&>(fragment).GetOstraInterfacePort().GetPort(), 19999U);
}

} // namespace
