// SPDX-License-Identifier: MIT
// The program routersim, as a user runs it.
#include "SimulatorSupport.h"
#include "TestFolder.h"

#include "documents/Exchange.h"
#include "documents/Recording.h"

#include "modelkit/Version.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtNetwork/QTcpServer>

#include <csignal>

using namespace simulator_support;

namespace {

class Program
{
public:
    explicit Program(const QStringList& words)
    {
        process.setProgram(qEnvironmentVariable("ROUTERSIM"));
        process.setArguments(words);
        process.start();
        EXPECT_TRUE(process.waitForStarted()) << "ROUTERSIM must name the program";
    }
    ~Program()
    {
        process.kill();
        process.waitForFinished();
    }

    // The port on which it says that it listens; 0 if it does not.
    quint16 port()
    {
        waitUntil([this] { return process.canReadLine() || process.state() == QProcess::NotRunning; });
        line = QString::fromUtf8(process.readLine());
        const auto colon = line.lastIndexOf(':');
        return line.mid(colon + 1, line.indexOf(',') - colon - 1).toUShort();
    }

    // "STATUS: what it says as an error".
    QString end()
    {
        waitUntil([this] { return process.state() == QProcess::NotRunning; });
        if (process.exitStatus() != QProcess::NormalExit)
            return text("crashed");
        return QStringLiteral("%1: %2")
            .arg(process.exitCode())
            .arg(QString::fromUtf8(process.readAllStandardError()).trimmed());
    }

    void interrupt(int signal) { EXPECT_EQ(::kill(static_cast<pid_t>(process.processId()), signal), 0); }

    QProcess process;
    QString line;
};

QString endOf(const QStringList& words) { return Program(words).end(); }

} // namespace

TEST(Routersim, ListensUntilASignal)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        Program program({"--port", "0", "--seed", "42"});
        const quint16 port = program.port();
        EXPECT_EQ(program.line, QStringLiteral("Listening on 127.0.0.1:%1, seed 42.\n").arg(port));
        TestClient client(port);
        client.ask(1, R"({"OstraInterfacePort":{}})", Form::Xml);
        EXPECT_EQ(client.heard(1), QStringList("Reply 1 {OstraInterfacePort:{Port:5001}}"));
        program.interrupt(signal);
        client.awaitEnd();
        EXPECT_EQ(program.end(), text("0: "));
    }
}

TEST(Routersim, FollowsItsScenarioAndWritesALog)
{
    const Folder folder;
    const QString log = folder.folder() + "/log.jsonl";
    const QString scenarioFile = folder.write(R"({"delays": [{"milliseconds": 1}],
        "events": [{"afterConnection": 1, "fragments": [{"OstraInterfacePort": {"Port": 9}}]}]})");
    for (int run = 1; run <= 2; ++run) {
        Program program({"--scenario", scenarioFile, "--log", log});
        TestClient client(program.port());
        EXPECT_EQ(client.heard(1), QStringList("Event {OstraInterfacePort:{Port:9}}"));
        client.ask(1, R"({"OstraInterfacePort":{}})");
        EXPECT_EQ(client.heard(1), QStringList("Reply 1 {OstraInterfacePort:{Port:9}}"));
        program.interrupt(SIGTERM);
        EXPECT_EQ(program.end(), text("0: "));
        QFile file(log);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        QStringList lines;
        while (!file.atEnd()) {
            const auto exchange = ROUTERDOCUMENTS::ReadExchange(file.readLine());
            lines += exchange.event ? NameOf(*exchange.event)
                                    : said(dynamic_cast<const PelLu300RouterInterfaceXml&>(*exchange.record));
        }
        ASSERT_EQ(lines.size(), 5 * run) << "the lines of the first run stay";
        EXPECT_EQ(lines.mid(5 * (run - 1)), QStringList({"connected", "Event {OstraInterfacePort:{Port:9}}",
                                                         "Request 1 {OstraInterfacePort:{}}",
                                                         "Reply 1 {OstraInterfacePort:{Port:9}}", "closed"}));
    }
}

TEST(Routersim, SaysWhatIsWrongAndStartsNothing)
{
    EXPECT_EQ(endOf({"--port", "x"}),
              text("2: routersim: --port needs a number from 0 to 65535, not \"x\". See routersim --help."));
    EXPECT_TRUE(endOf({"--nonsense"}).startsWith("2: routersim: There is no option \"--nonsense\"."));
    EXPECT_TRUE(endOf({"--seed"}).startsWith("2: routersim: "));
    EXPECT_TRUE(endOf({"--scenario", "/nowhere.json"}).startsWith("1: routersim: /nowhere.json: "));
    EXPECT_TRUE(endOf({"--host", "192.0.2.1"}).startsWith("1: routersim: Cannot listen on 192.0.2.1:0: "));
    EXPECT_TRUE(endOf({"--log", "/nowhere/log"}).startsWith("1: routersim: /nowhere/log: "));
    const Folder folder;
    const QString path = folder.write("{\"delay\": []}");
    const QString error =
        "1: routersim: " + path + ":1:11: There is no key \"delay\" here. Did you mean delays? (in $.delay)";
    EXPECT_EQ(endOf({"--scenario", path}), error);
    EXPECT_EQ(endOf({"--scenario", path, "--check-scenario"}), error);
}

TEST(Routersim, SaysThatAPortIsTaken)
{
    QTcpServer other;
    ASSERT_TRUE(other.listen(QHostAddress(QHostAddress::LocalHost)));
    const QString port = QString::number(other.serverPort());
    EXPECT_TRUE(
        endOf({"--port", port}).startsWith("1: routersim: Cannot listen on 127.0.0.1:" + port + ": "));
}

TEST(Routersim, EndsWhenItsLogCannotBeWritten)
{
    Program program({"--log", "/dev/full"});
    QTcpSocket client;
    client.connectToHost(QHostAddress(QHostAddress::LocalHost), program.port());
    EXPECT_TRUE(program.end().startsWith("1: routersim: /dev/full: "));
}

TEST(Routersim, FailsWhenItCannotSayWhereItListens)
{
    Program program({});
    program.port();
    program.interrupt(SIGTERM);
    program.end();
    QProcess full;
    full.setProgram(qEnvironmentVariable("ROUTERSIM"));
    full.setStandardOutputFile("/dev/full");
    full.start();
    ASSERT_TRUE(full.waitForFinished());
    EXPECT_EQ(full.exitCode(), 1);
    EXPECT_EQ(full.readAllStandardError(), QByteArray("routersim: Cannot write to the standard output.\n"));
}

TEST(Routersim, ShowsHelpVersionAndWhetherAScenarioIsRight)
{
    Program help({"--help"});
    EXPECT_EQ(help.end(), text("0: "));
    EXPECT_TRUE(help.process.readAllStandardOutput().startsWith("Usage: routersim "));
    Program version({"--version"});
    EXPECT_EQ(version.end(), text("0: "));
    EXPECT_EQ(version.process.readAllStandardOutput(), QByteArray("routersim " MODELKIT_VERSION "\n"));
    const Folder folder;
    Program check({"--check-scenario", "--scenario", folder.write("{}")});
    EXPECT_EQ(check.end(), text("0: "));
    EXPECT_EQ(QString::fromUtf8(check.process.readAllStandardOutput()), folder.path() + ": no errors.\n");
}
