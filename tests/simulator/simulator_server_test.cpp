// SPDX-License-Identifier: MIT
// The simulated router with clients, as long as nothing is broken.
#include "SimulatorSupport.h"

#include <QtCore/QFile>

#include <sys/resource.h>
#include <sys/socket.h>

using namespace simulator_support;

namespace {

constexpr char acquire[] = R"({"AcquireMastership":{}})";
constexpr char release[] = R"({"ReleaseMastership":{}})";

const QString firstIsMaster = "Event {MastershipState:{State:MasterPresent,MasterClientID:client-1}}";
const QString nobodyIsMaster = "Event {MastershipState:{State:NoMasterPresent}}";

} // namespace

// --- requests and replies ---------------------------------------------------------------------

TEST(SimulatorServer, AnswersInEachForm)
{
    for (const Form form : {Form::Xml, Form::Binary, Form::Compressed}) {
        Simulation simulation;
        const auto client = simulation.connectClient();
        client->ask(7, R"({"OstraInterfacePort":{}})", form);
        EXPECT_EQ(client->heard(1), QStringList("Reply 7 {OstraInterfacePort:{Port:5001}}"));
        EXPECT_EQ(client->forms, std::vector<Form>{form});
    }
}

TEST(SimulatorServer, AnswersEveryRequestInItsOwnForm)
{
    Simulation simulation(R"({"delays": [{"milliseconds": 10, "times": 1}]})");
    const auto client = simulation.connectClient();
    client->ask(1, acquire, Form::Xml);
    client->ask(2, {}, Form::Binary);
    client->ask(3, {}, Form::Compressed);
    EXPECT_EQ(client->heard(2), QStringList({"Reply 2", "Reply 3"})) << "only the first one is delayed";
    simulation.clock.advance(9);
    settle();
    EXPECT_EQ(client->lines, QStringList());
    simulation.clock.advance(1);
    EXPECT_EQ(client->heard(2), QStringList({"Reply 1 {AcquireMastership:{Success:true}}", firstIsMaster}));
    EXPECT_EQ(client->forms, (std::vector<Form>{Form::Binary, Form::Compressed, Form::Xml, Form::Compressed}))
        << "events come in the form of the last message";
}

TEST(SimulatorServer, TellsEventsInTheFormOfEachClient)
{
    Simulation simulation;
    const auto first = simulation.connectClient();
    const auto second = simulation.connectClient();
    const auto third = simulation.connectClient();
    second->ask(1, {}, Form::Xml);
    EXPECT_EQ(second->heard(1), QStringList("Reply 1"));
    first->ask(1, acquire, Form::Compressed);
    EXPECT_EQ(first->heard(2), QStringList({"Reply 1 {AcquireMastership:{Success:true}}", firstIsMaster}));
    EXPECT_EQ(second->heard(1), QStringList(firstIsMaster));
    EXPECT_EQ(third->heard(1), QStringList(firstIsMaster));
    EXPECT_EQ(first->forms, (std::vector<Form>{Form::Compressed, Form::Compressed}));
    EXPECT_EQ(second->forms, (std::vector<Form>{Form::Xml, Form::Xml}));
    EXPECT_EQ(third->forms, std::vector<Form>{Form::Binary}) << "it has not asked yet";
}

TEST(SimulatorServer, FreesTheRouterOfALostMaster)
{
    Simulation simulation;
    auto first = simulation.connectClient();
    const auto second = simulation.connectClient();
    first->ask(1, acquire);
    EXPECT_EQ(second->heard(1), QStringList(firstIsMaster));
    first.reset();
    EXPECT_EQ(second->heard(1), QStringList(nobodyIsMaster));
    second->ask(2, acquire);
    EXPECT_EQ(second->heard(2),
              QStringList({"Reply 2 {AcquireMastership:{Success:true}}",
                           "Event {MastershipState:{State:MasterPresent,MasterClientID:client-2}}"}));
    second->ask(3, release);
    EXPECT_EQ(second->heard(2), QStringList({"Reply 3 {ReleaseMastership:{Success:true}}", nobodyIsMaster}));
    EXPECT_EQ(simulation.ends(), QStringList(QString()));
}

TEST(SimulatorServer, TellsTheTuningToAll)
{
    Simulation simulation(R"({"ranges": {"Frequency": [1, 10]}})");
    const auto first = simulation.connectClient();
    const auto second = simulation.connectClient();
    first->ask(1, R"({"DF_Params":{"Frequency":20,"Bandwidth":2.5}})", Form::Xml);
    const QString tuning = "{DF_Params:{Frequency:10,DemodulationFrequency:0,Bandwidth:2.5,PanoramaSpan:0}}";
    EXPECT_EQ(first->heard(2), QStringList({"Reply 1 " + tuning, "Event " + tuning}));
    EXPECT_EQ(second->heard(1), QStringList("Event " + tuning));
}

TEST(SimulatorServer, AnswersARequestWithoutMessageIDWithoutOne)
{
    Simulation simulation;
    const auto client = simulation.connectClient();
    client->write("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Request</Type>"
                  "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    EXPECT_EQ(client->heard(1), QStringList("Reply"));
}

TEST(SimulatorServer, ReadsRequestsThatArriveBytewise)
{
    Simulation simulation;
    const auto client = simulation.connectClient();
    for (const char byte :
         QByteArray("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Request</Type>"
                    "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>")) {
        client->write(QByteArray(1, byte));
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(client->heard(1), QStringList("Reply"));
}

TEST(SimulatorServer, AnswersOnlyRequests)
{
    Simulation simulation;
    const auto client = simulation.connectClient();
    for (const char* type : {"Reply", "Event"})
        client->write(QByteArray("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>") + type
                      + "</Type><Fragment><AcquireMastership/></Fragment></PelLu300RouterMessage>"
                        "</PelLu300RouterInterfaceXml>");
    client->write("<PelLu300RouterInterfaceXml/>");
    client->ask(5, R"({"MastershipState":{}})");
    EXPECT_EQ(client->heard(1), QStringList("Reply 5 {MastershipState:{State:NoMasterPresent}}"))
        << "nothing has changed";
}

TEST(SimulatorServer, PassesOverRequestsThatCannotBeRead)
{
    Simulation simulation;
    const auto client = simulation.connectClient();
    const QByteArray wrong = "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Question</Type>"
                             "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>";
    client->write(wrong);
    client->write("<Other/>");
    client->ask(5);
    EXPECT_EQ(client->heard(1), QStringList("Reply 5"));
    std::vector<ROUTERDOCUMENTS::Exchange> refused;
    for (const auto& exchange : simulation.exchanges)
        if (!exchange.event && !exchange.record)
            refused.push_back(exchange);
    ASSERT_EQ(refused.size(), 2U);
    EXPECT_EQ(refused[0].bytes, wrong);
    EXPECT_EQ(refused[0].form, Form::Xml);
    EXPECT_EQ(refused[0].peer, client->peer());
    EXPECT_TRUE(refused[0].fault.contains("Question")) << refused[0].fault.toStdString();
    EXPECT_EQ(refused[1].bytes, QByteArray("<Other/>"));
}

TEST(SimulatorServer, AnswersAClientThatHasEndedItsDirection)
{
    Simulation simulation;
    for (int i = 0; i < 20; ++i) {
        const auto client = simulation.connectClient();
        client->ask(7);
        ASSERT_EQ(shutdown(static_cast<int>(client->socket.socketDescriptor()), SHUT_WR), 0);
        EXPECT_EQ(client->heard(1), QStringList("Reply 7"));
        client->awaitEnd();
    }
}

TEST(SimulatorServer, EndsConnectionsOnWhichNobodyCanTellWhatFollows)
{
    Simulation simulation(R"({"limits": {"messageSize": 500}})");
    const auto other = simulation.connectClient();
    for (const QByteArray& bytes : {QByteArray("hello"), QByteArray::fromHex("8553499a7fffffff")}) {
        const auto client = simulation.connectClient();
        client->write(bytes);
        client->awaitEnd();
    }
    const auto half = simulation.connectClient();
    half->write("<PelLu300Router");
    half->socket.disconnectFromHost();
    waitUntil([&] { return simulation.ends().size() == 3; });
    QStringList faults;
    QByteArray unread;
    for (const auto& exchange : simulation.exchanges)
        if (!exchange.event && !exchange.record) {
            faults += exchange.fault;
            unread += exchange.bytes;
        }
    EXPECT_EQ(simulation.ends(), faults);
    EXPECT_EQ(unread, QByteArray("hello") + QByteArray::fromHex("8553499a7fffffff") + "<PelLu300Router");
    other->ask(1);
    EXPECT_EQ(other->heard(1), QStringList("Reply 1"));
}

TEST(SimulatorServer, PassesOverFragmentsWithoutPayloadAndTooMany)
{
    Simulation simulation(R"({"limits": {"fragments": 2}})");
    const auto client = simulation.connectClient();
    unsigned int number = 0;
    for (const Form form : {Form::Xml, Form::Binary, Form::Compressed})
        for (const int count : {1, 2, 3}) {
            PelLu300RouterInterfaceXml document;
            PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
            message.SetType(PelLu300RouterMessage::Request);
            message.SetMessageID(++number);
            for (int i = 0; i < count; ++i)
                message.AppendFragment(count == 1 ? Fragment() : fragment(R"({"OstraInterfacePort":{}})"));
            client->write(ROUTERDOCUMENTS::WriteDocument(document, form));
        }
    client->ask(99);
    const QString ports = "{OstraInterfacePort:{Port:5001}} {OstraInterfacePort:{Port:5001}}";
    EXPECT_EQ(client->heard(4),
              QStringList({"Reply 2 " + ports, "Reply 5 " + ports, "Reply 8 " + ports, "Reply 99"}));
}

// --- refusals and delays ----------------------------------------------------------------------

TEST(SimulatorServer, RefusesWhatTheScenarioRefuses)
{
    Simulation simulation(R"({"refusals": [{"payload": "AcquireMastership", "times": 1}]})");
    const auto client = simulation.connectClient();
    client->ask(1, acquire);
    client->ask(2, acquire);
    EXPECT_EQ(client->heard(3), QStringList({"Reply 1 {AcquireMastership:{Success:false}}",
                                             "Reply 2 {AcquireMastership:{Success:true}}", firstIsMaster}));
}

TEST(SimulatorServer, CarriesOutADelayedRequestWhenItAnswers)
{
    Simulation simulation(R"({"delays": [{"client": 1, "milliseconds": 100}]})");
    const auto slow = simulation.connectClient();
    const auto quick = simulation.connectClient();
    slow->ask(1, acquire);
    waitUntil([&] { return simulation.clock.countWaiting() == 1; });
    quick->ask(1, acquire);
    EXPECT_EQ(quick->heard(2).constFirst(), text("Reply 1 {AcquireMastership:{Success:true}}"));
    simulation.clock.advance(100);
    EXPECT_EQ(slow->heard(2).constLast(), text("Reply 1 {AcquireMastership:{Success:false}}"));
}

TEST(SimulatorServer, ForgetsDelayedRequestsOfLostClients)
{
    Simulation simulation(R"({"delays": [{"client": 1, "milliseconds": 100}]})");
    auto slow = simulation.connectClient();
    const auto other = simulation.connectClient();
    slow->ask(1, acquire);
    waitUntil([&] { return simulation.clock.countWaiting() == 1; });
    slow.reset();
    waitUntil([&] { return simulation.ends().size() == 1; });
    simulation.clock.advance(1000);
    other->ask(1, R"({"MastershipState":{}})");
    EXPECT_EQ(other->heard(1), QStringList("Reply 1 {MastershipState:{State:NoMasterPresent}}"));
}

TEST(SimulatorServer, ReadsNoMoreThanSoManyRequestsThatWait)
{
    Simulation simulation(R"({"delays": [{"milliseconds": 100}], "limits": {"waitingRequests": 3}})");
    const auto client = simulation.connectClient();
    for (unsigned int number = 1; number <= 5; ++number)
        client->ask(number);
    waitUntil([&] { return simulation.clock.countWaiting() == 3; });
    settle();
    EXPECT_EQ(simulation.clock.countWaiting(), 3U);
    simulation.clock.advance(100);
    EXPECT_EQ(client->heard(3), QStringList({"Reply 1", "Reply 2", "Reply 3"}));
    waitUntil([&] { return simulation.clock.countWaiting() == 2; });
    simulation.clock.advance(100);
    EXPECT_EQ(client->heard(2), QStringList({"Reply 4", "Reply 5"}));
}

// --- events at times --------------------------------------------------------------------------

TEST(SimulatorServer, TellsEventsSinceTheStart)
{
    Simulation simulation(R"({"events": [
        {"at": 50, "every": 100, "times": 2, "fragments": [{"OstraInterfacePort": {"Port": 1}},
                                                           {"RouterVtServerPort": {"Port": 2}}]},
        {"at": 100, "fragments": [{"MastershipState": {"State": "RouterIsMaster"}}]},
        {"at": 500, "fragments": []}]})");
    const auto client = simulation.connectClient();
    simulation.clock.advance(49);
    settle();
    EXPECT_EQ(client->lines, QStringList());
    simulation.clock.advance(1);
    const QString ports = "Event {OstraInterfacePort:{Port:1}} {RouterVtServerPort:{Port:2}}";
    EXPECT_EQ(client->heard(1), QStringList(ports));
    simulation.clock.advance(449);
    EXPECT_EQ(client->heard(2), QStringList({"Event {MastershipState:{State:RouterIsMaster}}", ports}));
    simulation.clock.advance(1);
    EXPECT_EQ(client->heard(1), QStringList("Event"));
    EXPECT_EQ(simulation.clock.countWaiting(), 0U);
    client->ask(1, acquire);
    client->ask(2, R"({"OstraInterfacePort":{}})");
    EXPECT_EQ(client->heard(2), QStringList({"Reply 1 {AcquireMastership:{Success:false}}",
                                             "Reply 2 {OstraInterfacePort:{Port:1}}"}));
}

TEST(SimulatorServer, TellsEventsSinceAConnection)
{
    Simulation simulation(R"({"events": [
        {"afterConnection": 10, "client": 2, "every": 10, "fragments": [{"OstraInterfacePort": {"Port": 7}}]}]})");
    const auto first = simulation.connectClient();
    simulation.clock.advance(100);
    auto second = simulation.connectClient();
    simulation.clock.advance(10);
    const QString event = "Event {OstraInterfacePort:{Port:7}}";
    EXPECT_EQ(first->heard(1), QStringList(event)) << "told to all";
    EXPECT_EQ(second->heard(1), QStringList(event));
    second.reset();
    waitUntil([&] { return simulation.ends().size() == 1; });
    simulation.clock.advance(100);
    settle();
    EXPECT_EQ(first->lines, QStringList()) << "the connection is gone";
}

// --- chance -----------------------------------------------------------------------------------

TEST(SimulatorServer, DoesTheSameAgainWithTheSameSeed)
{
    const auto run = [](quint64 seed) {
        Simulation simulation(R"({
            "refusals": [{"client": 1, "probability": 0.5}],
            "delays": [{"client": 1, "probability": 0.3, "milliseconds": [1, 100]}],
            "faults": [{"client": 1, "fault": "wrongID", "probability": 0.2}],
            "events": [{"at": [1, 500], "every": 100, "probability": 0.5, "times": 10,
                        "fragments": [{"OstraInterfacePort": {"Port": 1}}]}]})",
                              seed);
        const auto client = simulation.connectClient();
        const auto other = simulation.connectClient();
        QStringList heard;
        for (unsigned int number = 1; number <= 30; ++number) {
            const size_t before = simulation.exchanges.size();
            client->ask(number, acquire);
            waitUntil([&] { return simulation.exchanges.size() > before; });
            settle();
            simulation.clock.advance(30);
            settle();
        }
        simulation.clock.advance(2000);
        // Replies have come before this one.
        const auto last = simulation.connectClient();
        last->ask(1);
        last->heard(1);
        for (const auto& exchange : simulation.exchanges)
            if (exchange.record && exchange.peer == client->peer())
                heard += said(dynamic_cast<const PelLu300RouterInterfaceXml&>(*exchange.record));
        return heard;
    };
    const QStringList heard = run(5);
    EXPECT_GT(heard.size(), 60);
    EXPECT_EQ(heard, run(5));
    EXPECT_NE(heard, run(6));
}

// --- many and slow clients --------------------------------------------------------------------

TEST(SimulatorServer, EndsTheConnectionOfAClientThatDoesNotRead)
{
    const QByteArray json =
        R"({"limits": {"queueSize": 500000}, "state": {"PelVtConnectServer": {"Address": ")"
        + QByteArray(200000, 'a') + R"("}}})";
    Simulation simulation(json.constData());
    const auto other = simulation.connectClient();
    TestClient slow(simulation.server.GetPort());
    slow.socket.disconnect();
    slow.socket.setReadBufferSize(1);
    unsigned int number = 0;
    while (simulation.ends().isEmpty() && number < 1000) {
        slow.ask(++number, R"({"PelVtConnectServer":{}})");
        settle();
        other->ask(number);
        EXPECT_EQ(other->heard(1), QStringList(QStringLiteral("Reply %1").arg(number)));
    }
    ASSERT_EQ(simulation.ends().size(), 1);
    EXPECT_TRUE(simulation.ends().constFirst().startsWith("The client reads too slowly: "))
        << simulation.ends().constFirst().toStdString();
}

// A scenario in JSON is refused when it has such a text.
TEST(SimulatorServer, EndsTheConnectionWhenItsFormCannotRepresentTheReply)
{
    for (const char* fault : {"[]", R"([{"fault": "halfMessage", "then": "nothing"}])"}) {
        Scenario bad = scenario((QByteArray(R"({"faults": )") + fault + '}').constData());
        bad.router.connectServer.SetAddress(QString(QChar(1)));
        TestClock clock;
        QStringList ends;
        SimulatorServer server(bad, 1, clock, [&ends](const ROUTERDOCUMENTS::Exchange& exchange) {
            if (exchange.event == ROUTERDOCUMENTS::ConnectionEvent::Closed)
                ends += exchange.fault;
        });
        ASSERT_TRUE(server.Listen(QHostAddress(QHostAddress::LocalHost), 0));
        TestClient client(server.GetPort());
        client.ask(1, R"({"PelVtConnectServer":{}})", Form::Xml);
        client.awaitEnd();
        EXPECT_EQ(client.arrived, QByteArray());
        ASSERT_EQ(ends.size(), 1);
        EXPECT_TRUE(ends[0].contains("XML cannot carry")) << ends[0].toStdString();
    }
}

TEST(SimulatorServer, AdmitsSoManyClientsAtATime)
{
    Simulation simulation(R"({"limits": {"clients": 2}})");
    auto first = simulation.connectClient();
    const auto second = simulation.connectClient();
    const auto third = simulation.connectClient();
    third->awaitEnd();
    EXPECT_EQ(simulation.ends(), QStringList("No more than 2 clients are admitted."));
    first.reset();
    waitUntil([&] { return simulation.ends().size() == 2; });
    const auto fourth = simulation.connectClient();
    fourth->ask(4);
    EXPECT_EQ(fourth->heard(1), QStringList("Reply 4"));
}

TEST(SimulatorServer, AcceptsClientsAgainWhenThereAreFilesToOpen)
{
    Simulation simulation;
    TestClient client(simulation.server.GetPort());
    waitUntil([&] { return simulation.exchanges.size() == 1; });
    QTcpSocket waiting;
    {
        // The socket gets the last descriptor, and the server none for its other end.
        rlimit before = {};
        ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
        rlimit few = before;
        QFile next("/dev/null");
        ASSERT_TRUE(next.open(QIODevice::ReadOnly));
        few.rlim_cur = static_cast<rlim_t>(next.handle()) + 1;
        next.close();
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
        waiting.connectToHost(QHostAddress(QHostAddress::LocalHost), simulation.server.GetPort());
        waitUntil([&] { return waiting.state() == QAbstractSocket::ConnectedState; });
        settle();
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    }
    EXPECT_EQ(simulation.exchanges.size(), 1U);
    // Some versions of Qt try again by themselves.
    waitUntil([&] {
        simulation.clock.advance(1000);
        return simulation.exchanges.size() == 2;
    });
    client.ask(1);
    EXPECT_EQ(client.heard(1), QStringList("Reply 1"));
}

TEST(SimulatorServer, EndsAllConnectionsWhenItCloses)
{
    Simulation simulation;
    const auto first = simulation.connectClient();
    const auto second = simulation.connectClient();
    first->ask(1, acquire);
    first->heard(2);
    simulation.server.Close();
    first->awaitEnd();
    second->awaitEnd();
    EXPECT_EQ(simulation.ends(), QStringList({QString(), QString()}));
    QTcpSocket late;
    late.connectToHost(QHostAddress(QHostAddress::LocalHost), simulation.server.GetPort());
    EXPECT_FALSE(late.waitForConnected(0));
}

TEST(SimulatorServer, SaysWhyItCannotListen)
{
    Simulation simulation;
    TestClock clock;
    SimulatorServer second({}, 1, clock);
    EXPECT_FALSE(second.Listen(QHostAddress(QHostAddress::LocalHost), simulation.server.GetPort()));
    EXPECT_FALSE(second.GetError().isEmpty());
    EXPECT_EQ(simulation.server.GetName(), QStringLiteral("127.0.0.1:%1").arg(simulation.server.GetPort()));
}

// --- the log ----------------------------------------------------------------------------------

TEST(SimulatorServer, LogsAllThatComesAndGoes)
{
    Simulation simulation;
    auto client = simulation.connectClient();
    const QString peer = client->peer();
    client->ask(1, acquire, Form::Xml);
    client->heard(2);
    client.reset();
    waitUntil([&] { return simulation.ends().size() == 1; });
    QStringList lines;
    for (const auto& exchange : simulation.exchanges) {
        EXPECT_EQ(exchange.peer, peer);
        QString line = NameOf(exchange.direction) + QLatin1Char(' ');
        if (exchange.event)
            line += NameOf(*exchange.event);
        else
            line += ROUTERDOCUMENTS::NameOf(*exchange.form) + QLatin1Char(' ')
                    + said(dynamic_cast<const PelLu300RouterInterfaceXml&>(*exchange.record));
        lines += line;
    }
    EXPECT_EQ(lines, QStringList({"received connected", "received xml Request 1 {AcquireMastership:{}}",
                                  "sent xml Reply 1 {AcquireMastership:{Success:true}}",
                                  "sent xml " + firstIsMaster, "received closed"}));
}
