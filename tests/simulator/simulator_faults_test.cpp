// SPDX-License-Identifier: MIT
// What a client receives when the simulated router is broken.
#include "SimulatorSupport.h"

using namespace simulator_support;

namespace {

constexpr char acquire[] = R"({"AcquireMastership":{}})";
const QString isMaster = "Event {MastershipState:{State:MasterPresent,MasterClientID:client-1}}";
const QString nobodyIsMaster = "Event {MastershipState:{State:NoMasterPresent}}";
const QString success = "Reply %1 {AcquireMastership:{Success:true}}";

// Bytes that the log says were sent wrongly.
QByteArray loggedBytes(const Simulation& simulation)
{
    for (const auto& exchange : simulation.exchanges)
        if (!exchange.event && !exchange.record) {
            EXPECT_EQ(exchange.direction, ROUTERDOCUMENTS::Direction::Sent);
            EXPECT_TRUE(exchange.fault.endsWith("as the scenario says.")) << exchange.fault.toStdString();
            return exchange.bytes;
        }
    return {};
}

} // namespace

TEST(SimulatorFaults, CutConnections)
{
    Simulation simulation(R"({"faults": [{"fault": "cutConnection", "after": 1}]})");
    const auto client = simulation.connectClient();
    const auto other = simulation.connectClient();
    client->ask(1, acquire);
    EXPECT_EQ(client->heard(2), QStringList({success.arg(1), isMaster}));
    EXPECT_EQ(other->heard(1), QStringList(isMaster));
    client->ask(2);
    client->awaitEnd();
    EXPECT_EQ(client->lines, QStringList());
    EXPECT_EQ(other->heard(1), QStringList(nobodyIsMaster));
    EXPECT_EQ(simulation.ends(), QStringList("The connection was cut, as the scenario says."));
}

TEST(SimulatorFaults, LetTheRequestBeCarriedOutBeforeTheConnectionIsCut)
{
    Simulation simulation(R"({"faults": [{"fault": "cutConnection", "client": 1}]})");
    const auto client = simulation.connectClient();
    const auto other = simulation.connectClient();
    client->ask(1, acquire);
    client->awaitEnd();
    EXPECT_EQ(client->arrived, QByteArray());
    EXPECT_EQ(other->heard(2), QStringList({isMaster, nobodyIsMaster}));
}

TEST(SimulatorFaults, SendHalfMessagesInEachForm)
{
    for (const Form form : {Form::Xml, Form::Binary, Form::Compressed}) {
        Simulation simulation(R"({"faults": [{"fault": "halfMessage"}]})");
        const auto client = simulation.connectClient();
        client->ask(1, acquire, form);
        client->awaitEnd();
        EXPECT_EQ(client->lines, QStringList());
        EXPECT_FALSE(client->arrived.isEmpty());
        EXPECT_EQ(ROUTERDOCUMENTS::FormOfContent(client->arrived), form);
        EXPECT_EQ(loggedBytes(simulation), client->arrived);
    }
}

TEST(SimulatorFaults, SendNothingBehindHalfAMessage)
{
    Simulation simulation(R"({"faults": [{"fault": "halfMessage", "then": "nothing", "client": 1}]})");
    const auto client = simulation.connectClient();
    const auto other = simulation.connectClient();
    client->ask(1, acquire);
    client->ask(2);
    EXPECT_EQ(other->heard(1), QStringList(isMaster)) << "the request is carried out";
    other->ask(1);
    EXPECT_EQ(other->heard(1), QStringList("Reply 1"));
    waitUntil([&] { return client->arrived == loggedBytes(simulation); });
    EXPECT_FALSE(client->isGone);
}

TEST(SimulatorFaults, GoOnBehindHalfAMessage)
{
    Simulation simulation(R"({"faults": [{"fault": "halfMessage", "then": "goOn", "times": 1}]})");
    const auto client = simulation.connectClient();
    client->ask(1, {}, Form::Xml);
    client->ask(2, {}, Form::Xml);
    waitUntil([&] { return client->arrived.endsWith("</PelLu300RouterInterfaceXml>\n"); });
    EXPECT_TRUE(client->arrived.startsWith(loggedBytes(simulation) + "<?xml"));
    EXPECT_FALSE(client->broken.isEmpty());
    EXPECT_FALSE(client->isGone);
}

TEST(SimulatorFaults, SendGarbage)
{
    for (const char* then : {"cut", "nothing", "goOn"}) {
        const QByteArray json =
            QByteArray(R"({"faults": [{"fault": "garbage", "size": 9, "then": ")") + then + R"("}]})";
        Simulation simulation(json.constData());
        const auto client = simulation.connectClient();
        client->ask(1, {}, Form::Xml);
        if (QByteArray(then) == "cut")
            client->awaitEnd();
        else if (QByteArray(then) == "nothing")
            waitUntil([&] { return client->arrived.size() == 9; });
        else
            waitUntil([&] { return client->arrived.endsWith("</PelLu300RouterInterfaceXml>\n"); });
        EXPECT_TRUE(client->broken.startsWith("The input is neither")) << client->broken.toStdString();
        EXPECT_EQ(loggedBytes(simulation).size(), 9);
        EXPECT_TRUE(client->arrived.startsWith(loggedBytes(simulation)));
    }
}

TEST(SimulatorFaults, ReplyWithWrongIDs)
{
    Simulation simulation(R"({"faults": [{"fault": "wrongID", "times": 1}]})");
    const auto client = simulation.connectClient();
    client->ask(7, R"({"OstraInterfacePort":{}})");
    client->ask(8);
    const QStringList heard = client->heard(2);
    ASSERT_EQ(heard.size(), 2);
    EXPECT_TRUE(heard[0].startsWith("Reply ") && heard[0].endsWith(" {OstraInterfacePort:{Port:5001}}"));
    EXPECT_FALSE(heard[0].startsWith("Reply 7 "));
    EXPECT_EQ(heard[1], text("Reply 8"));
}

TEST(SimulatorFaults, OfTheSameSeedAreTheSameWheneverTheDelayedAnswersCome)
{
    const auto run = [](bool isAnsweredFirst) {
        Simulation simulation(R"({
            "delays": [{"milliseconds": 40}],
            "faults": [{"fault": "wrongID", "probability": 0.5}]
        })",
                              7);
        const auto client = simulation.connectClient();
        constexpr int requests = 8;
        for (unsigned int i = 1; i <= requests; ++i) {
            client->ask(i);
            waitUntil([&] { return simulation.clock.countWaiting() == (isAnsweredFirst ? 1 : i); });
            if (isAnsweredFirst)
                simulation.clock.advance(40);
        }
        simulation.clock.advance(40);
        return client->heard(requests);
    };
    const QStringList atOnce = run(true);
    ASSERT_EQ(atOnce.size(), 8);
    int right = 0;
    for (int i = 0; i < 8; ++i)
        right += atOnce[i] == QStringLiteral("Reply %1").arg(i + 1) ? 1 : 0;
    EXPECT_GT(right, 0);
    EXPECT_LT(right, 8);
    EXPECT_EQ(run(false), atOnce);
}

TEST(SimulatorFaults, AnswerSomeRequestsWithSilence)
{
    Simulation simulation(R"({"faults": [{"fault": "silence", "payload": "AcquireMastership"}]})");
    const auto client = simulation.connectClient();
    client->ask(1, acquire);
    client->ask(2);
    EXPECT_EQ(client->heard(2), QStringList({isMaster, "Reply 2"})) << "carried out, and told to all";
}

// --- at times ---------------------------------------------------------------------------------

TEST(SimulatorFaults, AtTimesAffectAllClientsOrOne)
{
    Simulation simulation(R"({"faults": [{"fault": "cutConnection", "at": 10, "client": 2},
                                         {"fault": "cutConnection", "at": 20}]})");
    const auto first = simulation.connectClient();
    const auto second = simulation.connectClient();
    const auto third = simulation.connectClient();
    simulation.clock.advance(10);
    second->awaitEnd();
    first->ask(1);
    EXPECT_EQ(first->heard(1), QStringList("Reply 1"));
    simulation.clock.advance(10);
    first->awaitEnd();
    third->awaitEnd();
}

TEST(SimulatorFaults, AfterAConnectionAffectItsClient)
{
    Simulation simulation(R"({"faults": [{"fault": "garbage", "afterConnection": 10, "then": "goOn"}]})");
    const auto first = simulation.connectClient();
    simulation.clock.advance(9);
    const auto second = simulation.connectClient();
    simulation.clock.advance(1);
    waitUntil([&] { return !first->broken.isEmpty(); });
    settle();
    EXPECT_EQ(second->arrived, QByteArray());
    simulation.clock.advance(9);
    waitUntil([&] { return !second->broken.isEmpty(); });
}

TEST(SimulatorFaults, AtTimesBreakAMessageOfTheirOwn)
{
    Simulation simulation(R"({"faults": [{"fault": "wrongID", "at": 10},
                                         {"fault": "halfMessage", "at": 20, "then": "nothing"},
                                         {"fault": "wrongID", "at": 30}]})");
    const auto client = simulation.connectClient();
    client->ask(1, {}, Form::Xml);
    client->heard(1);
    simulation.clock.advance(10);
    const QStringList heard = client->heard(1);
    ASSERT_EQ(heard.size(), 1);
    EXPECT_TRUE(heard[0].startsWith("Reply ")
                && heard[0].endsWith(" {MastershipState:{State:NoMasterPresent}}"));
    client->arrived.clear();
    simulation.clock.advance(20);
    waitUntil([&] { return client->arrived == loggedBytes(simulation); });
    EXPECT_TRUE(client->arrived.startsWith("<?xml"));
}

TEST(SimulatorFaults, SilenceAtATimeIsForEver)
{
    Simulation simulation(R"({"faults": [{"fault": "silence", "at": 10, "client": 1}]})");
    const auto client = simulation.connectClient();
    const auto other = simulation.connectClient();
    simulation.clock.advance(10);
    client->ask(1, acquire);
    EXPECT_EQ(other->heard(1), QStringList(isMaster));
    settle();
    EXPECT_EQ(client->arrived, QByteArray());
    EXPECT_FALSE(client->isGone);
}
