// SPDX-License-Identifier: MIT
// Which requests the scenario refuses, delays and breaks, and what chance decides.
#include "SimulatorSupport.h"

#include "link/MessageReader.h"
#include "simulator/FaultBytes.h"
#include "simulator/RequestRules.h"

#include <set>

using namespace simulator_support;

namespace {

const QVector<Fragment> acquire = {fragment(R"({"AcquireMastership":{}})")};
const QVector<Fragment> tune = {fragment(R"({"DF_Params":{"Frequency":1}})")};

// One letter for each request: "." when nothing applies.
QString decided(RequestRules& rules, const QVector<QVector<Fragment>>& requests)
{
    QString line;
    for (const auto& request : requests) {
        const Decision decision = rules.Decide(request);
        EXPECT_EQ(decision.isRefused.size(), request.size());
        line += decision.isRefused.contains(true) ? 'r'
                : decision.delay > 0              ? 'd'
                : decision.fault                  ? 'f'
                                                  : '.';
    }
    return line;
}

} // namespace

TEST(RequestRules, ApplyToThePayload)
{
    const Scenario all = scenario(R"({"refusals": [{"payload": "AcquireMastership"}],
                                      "delays": [{"payload": "DF_Params", "milliseconds": 5}]})");
    RequestRules rules(all, 1, 1);
    EXPECT_EQ(decided(rules, {acquire, tune, {}, tune}), text("rd.d"));
    EXPECT_EQ(rules.Decide(tune + acquire).isRefused, (QVector<bool>{false, true}));
    EXPECT_EQ(rules.Decide(tune + acquire).delay, 5);
}

TEST(RequestRules, WithoutPayloadApplyToEveryRequest)
{
    const Scenario all = scenario(R"({"faults": [{"fault": "silence"}]})");
    RequestRules rules(all, 1, 1);
    EXPECT_EQ(decided(rules, {acquire, {}, tune}), text("fff"));
}

TEST(RequestRules, ApplyToTheClient)
{
    const Scenario all = scenario(R"({"refusals": [{"client": 2}]})");
    RequestRules first(all, 1, 1);
    RequestRules second(all, 2, 1);
    EXPECT_EQ(decided(first, {acquire, acquire}), text(".."));
    EXPECT_EQ(decided(second, {acquire, acquire}), text("rr"));
}

TEST(RequestRules, CountTheFittingRequestsOfEachClient)
{
    const Scenario all =
        scenario(R"({"refusals": [{"payload": "AcquireMastership", "after": 1, "times": 2}]})");
    for (int client = 1; client <= 2; ++client) {
        RequestRules rules(all, client, 1);
        EXPECT_EQ(decided(rules, {tune, acquire, tune, acquire, acquire, acquire}), text("...rr."));
    }
}

TEST(RequestRules, BehindTheFirstThatAppliesCountNothing)
{
    const Scenario all = scenario(R"({"faults": [{"fault": "silence", "times": 1},
                                                 {"fault": "garbage", "times": 1}]})");
    RequestRules rules(all, 1, 1);
    EXPECT_EQ(rules.Decide(tune).fault->kind, Fault::Silence);
    EXPECT_EQ(rules.Decide(tune).fault->kind, Fault::Garbage);
    EXPECT_FALSE(rules.Decide(tune).fault);
}

TEST(RequestRules, LeaveToChanceWhatTheSeedDecides)
{
    const Scenario all =
        scenario(R"({"refusals": [{"probability": 0.5}], "delays": [{"milliseconds": [1, 1000]}]})");
    const auto run = [&all](int client, quint64 seed) {
        RequestRules rules(all, client, seed);
        QVector<qint64> drawn;
        for (int i = 0; i < 200; ++i) {
            const Decision decision = rules.Decide(tune);
            EXPECT_TRUE(decision.delay >= 1 && decision.delay <= 1000) << decision.delay;
            drawn += decision.isRefused.constFirst() ? -decision.delay : decision.delay;
        }
        return drawn;
    };
    const QVector<qint64> drawn = run(1, 7);
    EXPECT_EQ(drawn, run(1, 7));
    EXPECT_NE(drawn, run(1, 8));
    EXPECT_NE(drawn, run(2, 7));
    EXPECT_NE(drawn, run(1, 7 + (quint64(1) << 32)));
    const auto refused = std::count_if(drawn.begin(), drawn.end(), [](qint64 value) { return value < 0; });
    EXPECT_GT(refused, 60);
    EXPECT_LT(refused, 140);
}

TEST(RequestRules, WithTheProbabilitiesZeroAndOneLeaveNothingToChance)
{
    const Scenario all = scenario(R"({"refusals": [{"probability": 0}], "faults": [{"fault": "silence"}]})");
    RequestRules rules(all, 1, 1);
    EXPECT_EQ(decided(rules, QVector<QVector<Fragment>>(100, tune)), QString(100, 'f'));
}

// A compiler or library with other numbers would make other runs of the same seed.
TEST(Randomness, IsTheSameEverywhere)
{
    Randomness random(1, 2);
    QVector<quint64> drawn;
    for (int i = 0; i < 4; ++i)
        drawn += random.Below(1000);
    EXPECT_EQ(drawn, (QVector<quint64>{622, 424, 700, 684}));
}

// --- bytes ------------------------------------------------------------------------------------

TEST(FaultBytes, OfGarbageBeginNoMessage)
{
    Randomness random(1, 1);
    std::set<QByteArray> different;
    for (int i = 0; i < 200; ++i) {
        const QByteArray bytes = garbage(1 + i % 20, random);
        EXPECT_EQ(bytes.size(), 1 + i % 20);
        different.insert(bytes);
        ROUTERLINK::MessageReader reader;
        reader.AddData(bytes);
        reader.EndData();
        PelLu300RouterInterfaceXml document;
        EXPECT_EQ(reader.Next(document), ROUTERLINK::MessageReader::Broken);
    }
    EXPECT_GT(different.size(), 150U);
}

TEST(FaultBytes, OfHalfAMessageAreNotAll)
{
    EXPECT_EQ(firstHalf("abcdef"), QByteArray("abc"));
    EXPECT_EQ(firstHalf("abc"), QByteArray("a"));
}

TEST(FaultBytes, OfAWrongIDAreNeverThoseOfTheRequest)
{
    Randomness random(1, 1);
    for (const unsigned int id : {0U, 1U, 7U, 0x7fffffffU, 0x80000000U, 0xffffffffU})
        for (int i = 0; i < 1000; ++i) {
            const unsigned int wrong = wrongID(id, random);
            EXPECT_NE(wrong, id);
            EXPECT_LE(wrong, 0x7fffffffU) << "XML carries it";
        }
}
