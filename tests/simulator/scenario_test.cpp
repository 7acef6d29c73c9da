// SPDX-License-Identifier: MIT
// Reading scenarios: every key, and what is wrong with them.
#include "SimulatorSupport.h"
#include "TestFolder.h"

#include "simulator/Options.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

using namespace simulator_support;

namespace {

QString errorOf(const QByteArray& json)
{
    try {
        ReadScenario(json, text("test.json"));
    } catch (const ScenarioError& error) {
        EXPECT_EQ(error.GetText(), QString::fromUtf8(error.what()));
        return error.GetText();
    }
    return text("nothing");
}

// The scenario that the page shows.
QByteArray scenarioOnPage()
{
    QFile page(projectPath("docs/simulator.md"));
    EXPECT_TRUE(page.open(QIODevice::ReadOnly));
    const QByteArray content = page.readAll();
    const auto begin = content.indexOf("```json\n");
    const auto end = content.indexOf("```", begin + 8);
    return begin < 0 ? QByteArray() : content.mid(begin + 8, end - begin - 8);
}

} // namespace

TEST(Scenario, NeedsNoKey)
{
    const Scenario empty = scenario("{}");
    EXPECT_EQ(empty.router.mastership.GetState(), MastershipState::NoMasterPresent);
    EXPECT_EQ(empty.router.ostraPort.GetPort(), 5001U);
    EXPECT_EQ(empty.router.serverPort.GetPort(), 5002U);
    EXPECT_EQ(empty.router.connectServer.GetPort(), 5003U);
    EXPECT_TRUE(empty.events.isEmpty() && empty.faults.isEmpty() && empty.timedFaults.isEmpty());
    EXPECT_TRUE(empty.refusals.isEmpty() && empty.delays.isEmpty());
    EXPECT_EQ(empty.limits.clients, 64);
    EXPECT_EQ(empty.limits.queueSize, 1 << 20);
    EXPECT_EQ(empty.limits.messageSize, 1 << 20);
    EXPECT_EQ(empty.limits.waitingRequests, 100);
    EXPECT_EQ(empty.limits.fragments, 100);
}

TEST(Scenario, ReadsAllKeys)
{
    const Scenario all = scenario(R"({
        "state": {"DF_Params": {"Frequency": 25}}, "ranges": {"Frequency": [20, 30], "PanoramaSpan": [1, 2]},
        "mayBeTakenFromRouter": true, "onlyMasterTunes": true,
        "refusals": [{"payload": "DF_Params", "client": 2, "after": 3, "times": 4, "probability": 0.5}],
        "delays": [{"milliseconds": 10}, {"milliseconds": [10, 20], "payload": "MastershipState"}],
        "faults": [{"fault": "garbage", "size": 7, "then": "goOn", "after": 2},
                   {"fault": "halfMessage", "then": "nothing", "at": [5, 6], "client": 1},
                   {"fault": "cutConnection", "afterConnection": 3, "every": 4, "times": 2, "probability": 1},
                   {"fault": "wrongID"}, {"fault": "silence"}],
        "events": [{"at": 1000, "every": 50, "fragments": [{"OstraInterfacePort": {"Port": 1}}]},
                   {"afterConnection": 0, "client": 3, "fragments": []}],
        "limits": {"clients": 1, "queueSize": 2, "messageSize": 3, "waitingRequests": 4, "fragments": 5}})");
    EXPECT_EQ(all.router.tuning.GetFrequency(), 25);
    EXPECT_EQ(all.router.tuning.GetPanoramaSpan(), 1) << "next to zero";
    EXPECT_EQ(all.router.frequency.most, 30);
    EXPECT_TRUE(all.router.mayBeTakenFromRouter);
    EXPECT_TRUE(all.router.onlyMasterTunes);
    ASSERT_EQ(all.refusals.size(), 1);
    EXPECT_EQ(all.refusals[0].filter.payload, Fragment::DF_Params);
    EXPECT_EQ(all.refusals[0].filter.client, 2);
    EXPECT_EQ(all.refusals[0].filter.after, 3);
    EXPECT_EQ(all.refusals[0].filter.times, 4);
    EXPECT_EQ(all.refusals[0].filter.probability, 0.5);
    ASSERT_EQ(all.delays.size(), 2);
    EXPECT_EQ(all.delays[0].span.least, 10);
    EXPECT_EQ(all.delays[0].span.most, 10);
    EXPECT_EQ(all.delays[1].span.most, 20);
    ASSERT_EQ(all.faults.size(), 3);
    EXPECT_EQ(all.faults[0].fault.kind, Fault::Garbage);
    EXPECT_EQ(all.faults[0].fault.size, 7);
    EXPECT_EQ(all.faults[0].fault.then, Fault::GoOn);
    EXPECT_EQ(all.faults[1].fault.kind, Fault::WrongID);
    EXPECT_EQ(all.faults[2].fault.kind, Fault::Silence);
    ASSERT_EQ(all.timedFaults.size(), 2);
    EXPECT_EQ(all.timedFaults[0].fault.kind, Fault::HalfMessage);
    EXPECT_EQ(all.timedFaults[0].fault.then, Fault::Nothing);
    EXPECT_EQ(all.timedFaults[0].timing.at.most, 6);
    EXPECT_EQ(all.timedFaults[1].timing.since, Timing::Connection);
    EXPECT_EQ(all.timedFaults[1].timing.every, 4);
    EXPECT_EQ(all.timedFaults[1].timing.times, 2);
    ASSERT_EQ(all.events.size(), 2);
    EXPECT_EQ(all.events[0].timing.at.least, 1000);
    EXPECT_EQ(said(all.events[0].fragments), text("{OstraInterfacePort:{Port:1}}"));
    EXPECT_EQ(all.events[1].timing.client, 3);
    EXPECT_EQ(all.limits.clients, 1);
    EXPECT_EQ(all.limits.queueSize, 2);
    EXPECT_EQ(all.limits.messageSize, 3);
    EXPECT_EQ(all.limits.waitingRequests, 4);
    EXPECT_EQ(all.limits.fragments, 5);
}

TEST(Scenario, SaysWhereItIsWrongAndWhatMayBeMeant)
{
    const struct
    {
        const char* json;
        const char* error;
    } cases[] = {
        {"", "1:1: "},
        {"{\"limits\": {}", "1:14: "},
        {"[]", "1:1: Expected is an object. (in $)"},
        {"{\n  \"delay\": []}", "2:12: There is no key \"delay\" here. Did you mean delays? (in $.delay)"},
        {"{\"limits\": {}, \"limits\": {}}", "1:16: The key is repeated. (in $.limits)"},
        {R"({"limits": {"clients": 0}})",
         "1:24: Expected is a whole number from 1 to 10000, not 0. (in $.limits.clients)"},
        {R"({"limits": {"clients": 1.5}})",
         "1:24: Expected is a whole number from 1 to 10000, not 1.5. (in $.limits.clients)"},
        {R"({"limits": {"clients": "1"}})",
         "1:24: Expected is a whole number from 1 to 10000. (in $.limits.clients)"},
        {R"({"limits": {"queuesize": 1}})",
         "1:26: There is no key \"queuesize\" here. Did you mean queueSize? (in $.limits.queuesize)"},
        {R"({"onlyMasterTunes": 1})", "1:21: Expected is true or false. (in $.onlyMasterTunes)"},
        {R"({"delays": {}})", "1:12: Expected is an array. (in $.delays)"},
        {R"({"delays": [{}]})", "1:13: The key \"milliseconds\" is missing. (in $.delays[0])"},
        {R"({"delays": [{"milliseconds": -1}]})",
         "1:30: Expected is a whole number from 0 to 86400000, not -1. (in $.delays[0].milliseconds)"},
        {R"({"delays": [{"milliseconds": [1]}]})",
         "1:30: Expected are two numbers, the least and the most. (in $.delays[0].milliseconds)"},
        {R"({"delays": [{"milliseconds": [2, 1]}]})",
         "1:30: The least is greater than the most. (in $.delays[0].milliseconds)"},
        {R"({"refusals": [{"probability": 2}]})",
         "1:31: Expected is a number from 0 to 1, not 2. (in $.refusals[0].probability)"},
        {R"({"refusals": [{"payload": "DFParams"}]})",
         "1:27: \"DFParams\" is not known; expected is MastershipState, AcquireMastership, "
         "ReleaseMastership, "
         "OstraInterfacePort, PelVtConnectServer, RouterVtServerPort or DF_Params. Did you mean DF_Params? "
         "(in $.refusals[0].payload)"},
        {R"({"refusals": [{"fault": "silence"}]})",
         "1:25: There is no key \"fault\" here. (in $.refusals[0].fault)"},
        {R"({"faults": [{}]})", "1:13: The key \"fault\" is missing. (in $.faults[0])"},
        {R"({"faults": [{"fault": "Silence"}]})", "1:23: \"Silence\" is not known; expected is "
                                                  "cutConnection, halfMessage, garbage, wrongID or silence. "
                                                  "Did you mean silence? (in $.faults[0].fault)"},
        {R"({"faults": [{"fault": "silence", "then": "cut"}]})",
         "1:42: There is no key \"then\" here. (in $.faults[0].then)"},
        {R"({"faults": [{"fault": "silence", "at": 1, "payload": "DF_Params"}]})",
         "1:54: There is no key \"payload\" here. (in $.faults[0].payload)"},
        {R"({"faults": [{"fault": "silence", "at": 1, "afterConnection": 1}]})",
         "1:13: Expected is one of the keys \"at\" and \"afterConnection\". (in $.faults[0])"},
        {R"({"faults": [{"fault": "silence", "at": 1, "times": 2}]})",
         "1:13: The key \"times\" needs the key \"every\". (in $.faults[0])"},
        {R"({"events": [{"fragments": []}]})",
         "1:13: Expected is one of the keys \"at\" and \"afterConnection\". (in $.events[0])"},
        {R"({"events": [{"at": 1}]})", "1:13: The key \"fragments\" is missing. (in $.events[0])"},
        {R"({"events": [{"at": 1, "client": 1, "fragments": []}]})",
         "1:13: The key \"client\" needs \"afterConnection\": all clients are told of events. "
         "(in $.events[0])"},
        {R"({"events": [{"at": 1, "fragments": [{"Fragment": {}}]}]})",
         "1:37: Fragment is no payload; expected is MastershipState, AcquireMastership, ReleaseMastership, "
         "OstraInterfacePort, PelVtConnectServer, RouterVtServerPort or DF_Params. "
         "(in $.events[0].fragments[0])"},
        {R"({"events": [{"at": 1, "fragments": [{"DF_Params": {"Freqency": 1}}]}]})",
         "1:37: DF_Params has no member \"Freqency\". Did you mean Frequency? "
         "(in $.events[0].fragments[0].DF_Params.Freqency)"},
        {R"({"events": [{"at": 1, "fragments": [{"MastershipState": {}}]}]})",
         "1:37: State is missing. (in $.events[0].fragments[0])"},
        {R"({"ranges": {"Frequency": [0, 1]}, "events": [{"at": 1, "fragments": [{"DF_Params": {"Frequency": 2}}]}]})",
         "1:70: Frequency is not in its range. (in $.events[0].fragments[0])"},
        {R"({"ranges": {"Frequency": 1}})", "1:26: Expected is an array. (in $.ranges.Frequency)"},
        {R"({"ranges": {"Frequency": [1, "2"]}})", "1:30: Expected is a number. (in $.ranges.Frequency[1])"},
        {R"({"ranges": {"Frequency": [1, 1e999]}})",
         "1:30: Expected is a number, not 1e999. (in $.ranges.Frequency[1])"},
        {R"({"ranges": {"Frequency": [2, 1]}})",
         "1:26: The least is greater than the most. (in $.ranges.Frequency)"},
        {R"({"state": {"DF_Params": {"Frequency": "NaN"}}})",
         "1:11: Frequency is not in its range. (in $.state)"},
        {R"({"state": {"Ports": {}}})", "1:21: There is no key \"Ports\" here."},
        {R"({"state": {"MastershipState": {"State": "MasterPresent"}}})",
         "1:11: A master that is present needs a MasterClientID. (in $.state)"},
        {R"({"state": {"MastershipState": {"State": "Nobody"}}})", "1:31: "},
        {R"({"state": {"OstraInterfacePort": {"Port": -1}}})", "1:34: "},
        {R"({"state": {"PelVtConnectServer": {"Address": "\u0001"}}})", "1:34: "},
    };
    for (const auto& each : cases) {
        const QString error = errorOf(each.json);
        EXPECT_TRUE(error.startsWith(text("test.json:") + each.error)) << each.json << "\n"
                                                                       << error.toStdString();
    }
}

TEST(Scenario, TellsThePathsOfMembers)
{
    EXPECT_TRUE(errorOf(R"({"state": {"OstraInterfacePort": {"Port": -1}}})")
                    .endsWith(text("(in $.state.OstraInterfacePort.Port)")));
    EXPECT_TRUE(errorOf(R"({"state": {"MastershipState": {"State": "NoMaster"}}})")
                    .contains(text("Did you mean NoMasterPresent?")));
}

TEST(Scenario, TellsFilesThatCannotBeRead)
{
    EXPECT_THROW(LoadScenario(text("/nowhere/scenario.json")), ScenarioError);
    EXPECT_THROW(LoadScenario(text("/")), ScenarioError);
    EXPECT_THROW(LoadScenario(text("/dev/zero")), ScenarioError);
}

TEST(Scenario, OfThePageCanBeRead)
{
    const QByteArray json = scenarioOnPage();
    ASSERT_FALSE(json.isEmpty());
    const Scenario shown = scenario(json.constData());
    EXPECT_FALSE(shown.refusals.isEmpty() || shown.delays.isEmpty() || shown.events.isEmpty());
    EXPECT_FALSE(shown.faults.isEmpty() || shown.timedFaults.isEmpty());
}

TEST(Scenario, ExamplesCanBeRead)
{
    const QDir folder(projectPath("examples/scenarios"));
    const QStringList files = folder.entryList({"*.json"}, QDir::Files);
    EXPECT_GE(files.size(), 4);
    for (const QString& file : files)
        EXPECT_NO_THROW(LoadScenario(folder.filePath(file))) << file.toStdString();
}

// --- the command line -------------------------------------------------------------------------

TEST(SimulatorOptions, AreRead)
{
    QString problem;
    const auto options = readOptions({"--port", "4711", "--host=::1", "--seed", "18446744073709551615",
                                      "--scenario", "a.json", "--log", "b.jsonl"},
                                     problem);
    ASSERT_TRUE(options) << problem.toStdString();
    EXPECT_EQ(options->task, Options::Serve);
    EXPECT_EQ(options->port, 4711);
    EXPECT_EQ(options->host, QHostAddress(QHostAddress::LocalHostIPv6));
    EXPECT_EQ(options->seed, 18446744073709551615U);
    EXPECT_EQ(options->scenario, text("a.json"));
    EXPECT_EQ(options->log, text("b.jsonl"));
    EXPECT_EQ(readOptions({"--scenario", "a", "--check-scenario"}, problem)->task, Options::CheckScenario);
    EXPECT_EQ(readOptions({"--help", "--version"}, problem)->task, Options::ShowHelp);
    EXPECT_FALSE(readOptions({}, problem)->seed);
}

TEST(SimulatorOptions, ThatAreWrongAreRefused)
{
    const struct
    {
        QStringList words;
        const char* problem;
    } cases[] = {
        {{"--port", "65536"}, "--port needs a number from 0 to 65535, not \"65536\"."},
        {{"--port", "+1"}, "--port needs a number from 0 to 65535, not \"+1\"."},
        {{"--port", ""}, "--port needs a number from 0 to 65535, not \"\"."},
        {{"--seed", "x"}, "--seed needs a number from 0 to 18446744073709551615, not \"x\"."},
        {{"--host", "localhost."}, "--host needs an address, not \"localhost.\"."},
        {{"--check-scenario"}, "--check-scenario needs --scenario."},
        {{"--scenario", ""}, "--scenario needs the name of a file."},
        {{"--log="}, "--log needs the name of a file."},
        {{"file"}, "\"file\" is no option."},
        {{"--scenarios"}, "There is no option \"--scenarios\". Did you mean --scenario?"},
    };
    for (const auto& each : cases) {
        QString problem;
        EXPECT_FALSE(readOptions(each.words, problem));
        EXPECT_EQ(problem, text(each.problem));
    }
    QString problem;
    EXPECT_FALSE(readOptions({"--port"}, problem));
    EXPECT_FALSE(problem.isEmpty());
}

TEST(SimulatorOptions, AreInTheManualPage)
{
    QFile page(projectPath("simulator/routersim.1"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QString manual = QString::fromUtf8(page.readAll()).remove(QLatin1Char('\\'));
    int options = 0;
    for (const QString& line : helpText().split('\n')) {
        if (!line.startsWith("  --"))
            continue;
        ++options;
        const QStringList words = line.simplified().split(' ');
        const bool hasValue = words.at(1) == words.at(1).toUpper();
        EXPECT_TRUE(manual.contains(hasValue
                                        ? QStringLiteral(".BI %1 \" %2\"\n").arg(words.at(0), words.at(1))
                                        : QStringLiteral(".B %1\n").arg(words.at(0))))
            << line.toStdString();
    }
    EXPECT_EQ(options, 8);
}

TEST(SimulatorOptions, AreInTheHelpAndOnThePage)
{
    EXPECT_EQ(helpText(), text(R"(Usage: routersim [OPTION]...

Simulates a router, to test clients of it. Prints the address and port on
which it listens and the seed, and runs until SIGINT or SIGTERM.

  --host ADDRESS      the address to listen on (127.0.0.1)
  --port N            the port to listen on; 0, the default, is any free one
  --scenario FILE     the router and what goes wrong with it, in JSON
  --seed N            decides everything that is left to chance; without it,
                      each run has another one
  --log FILE          appends all messages to the file, in lines of JSON
  --check-scenario    only says what is wrong with the scenario
  --help              shows this text
  --version           shows the version
)"));
    QFile page(projectPath("docs/simulator.md"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    QString indented;
    for (const QString& line : helpText().trimmed().split('\n'))
        indented += line.isEmpty() ? text("\n") : text("    ") + line + '\n';
    EXPECT_TRUE(QString::fromUtf8(page.readAll()).contains(indented)) << indented.toStdString();
}
