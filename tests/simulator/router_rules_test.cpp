// SPDX-License-Identifier: MIT
// The rules of the simulated router, without connections.
#include "SimulatorSupport.h"

#include "simulator/RouterState.h"

using namespace simulator_support;

namespace {

// A router that says its answers as text: "reply | news".
class Router
{
public:
    explicit Router(const char* json = "{}") : state(scenario(json).router) {}

    QString ask(const char* client, const QVector<QByteArray>& fragments,
                const std::function<bool(int)>& isRefused = {})
    {
        QVector<Fragment> asked;
        for (const QByteArray& json : fragments)
            asked += fragment(json);
        const RouterState::Answer answer = state.CarryOut(text(client), asked, isRefused);
        return said(answer.reply) + QLatin1String(" | ") + said(answer.news);
    }
    QString ask(const char* client, const char* json) { return ask(client, QVector<QByteArray>(1, json)); }
    QString leave(const char* client) { return said(state.Leave(text(client))); }
    QString happen(const char* json) { return said(state.Happen({fragment(json)})); }

    RouterState state;
};

constexpr char acquire[] = R"({"AcquireMastership":{}})";
constexpr char release[] = R"({"ReleaseMastership":{}})";
constexpr char mastership[] = R"({"MastershipState":{}})";

constexpr char oneIsMaster[] = "{MastershipState:{State:MasterPresent,MasterClientID:one}}";
constexpr char nobodyIsMaster[] = "{MastershipState:{State:NoMasterPresent}}";

QString acquired(bool success, const char* news = "")
{
    return QStringLiteral("{AcquireMastership:{Success:%1}} | %2")
        .arg(QLatin1String(success ? "true" : "false"), QLatin1String(news));
}
QString released(bool success, const char* news = "")
{
    return QStringLiteral("{ReleaseMastership:{Success:%1}} | %2")
        .arg(QLatin1String(success ? "true" : "false"), QLatin1String(news));
}

} // namespace

// --- mastership -------------------------------------------------------------------------------

TEST(RouterRules, LetOneClientBeMaster)
{
    Router router;
    EXPECT_EQ(router.ask("one", acquire), acquired(true, oneIsMaster));
    EXPECT_EQ(router.ask("two", acquire), acquired(false));
    EXPECT_EQ(router.ask("two", mastership), text(oneIsMaster) + " | ");
    EXPECT_EQ(router.ask("two", release), released(false));
    EXPECT_EQ(router.ask("one", release), released(true, nobodyIsMaster));
    EXPECT_EQ(router.ask("one", release), released(false));
    EXPECT_EQ(router.ask("two", acquire),
              acquired(true, "{MastershipState:{State:MasterPresent,MasterClientID:two}}"));
}

TEST(RouterRules, TellTheMasterAgainThatItIsMaster)
{
    Router router;
    router.ask("one", acquire);
    EXPECT_EQ(router.ask("one", acquire), acquired(true));
}

TEST(RouterRules, FreeTheRouterOfALostMasterOnly)
{
    Router router;
    router.ask("one", acquire);
    EXPECT_EQ(router.leave("two"), QString());
    EXPECT_EQ(router.leave("one"), text(nobodyIsMaster));
    EXPECT_EQ(router.leave("one"), QString());
    EXPECT_EQ(router.ask("two", mastership), text(nobodyIsMaster) + " | ");
}

TEST(RouterRules, KeepTheMastershipOfTheRouter)
{
    Router router(R"({"state": {"MastershipState": {"State": "RouterIsMaster"}}})");
    EXPECT_EQ(router.ask("one", acquire), acquired(false));
    EXPECT_EQ(router.ask("one", release), released(false));
    EXPECT_EQ(router.ask("one", mastership), text("{MastershipState:{State:RouterIsMaster}} | "));
    EXPECT_EQ(router.leave("one"), QString());
}

TEST(RouterRules, TakeTheRouterWhenItMayBeTaken)
{
    Router router(
        R"({"mayBeTakenFromRouter": true, "state": {"MastershipState": {"State": "RouterIsMaster"}}})");
    EXPECT_EQ(router.ask("one", acquire), acquired(true, oneIsMaster));
    EXPECT_EQ(router.ask("two", acquire), acquired(false)) << "never from another client";
}

TEST(RouterRules, KnowAMasterThatIsNotConnected)
{
    Router router(
        R"({"state": {"MastershipState": {"State": "MasterPresent", "MasterClientID": "console"}}})");
    EXPECT_EQ(router.ask("one", acquire), acquired(false));
    EXPECT_EQ(router.happen(R"({"MastershipState":{"State":"MasterPresent","MasterClientID":"one"}})"),
              text(oneIsMaster));
    EXPECT_EQ(router.ask("one", release), released(true, nobodyIsMaster));
}

TEST(RouterRules, RefuseWhatTheScenarioRefuses)
{
    Router router;
    const auto always = [](int) { return true; };
    EXPECT_EQ(router.ask("one", {acquire}, always), acquired(false));
    router.ask("one", acquire);
    EXPECT_EQ(router.ask("one", {release}, always), released(false));
    EXPECT_EQ(router.ask("one", mastership), text(oneIsMaster) + " | ");
    EXPECT_EQ(router.ask("one", {mastership, R"({"OstraInterfacePort":{"Port":7}})"}, always),
              text("{MastershipState:{}} {OstraInterfacePort:{}} | "));
    const QString refused = router.ask("one", {R"({"DF_Params":{"Frequency":5}})"}, always);
    EXPECT_TRUE(refused.startsWith("{DF_Params:{Frequency:0,")) << refused.toStdString();
    EXPECT_TRUE(refused.endsWith(" | ")) << "nobody is told of it";
}

// --- values -----------------------------------------------------------------------------------

TEST(RouterRules, AnswerWithTheConfiguredPorts)
{
    Router router(R"({"state": {"OstraInterfacePort": {"Port": 4294967295},
                                "RouterVtServerPort": {"Port": 2},
                                "PelVtConnectServer": {"Address": "router", "Port": 3}}})");
    EXPECT_EQ(router.ask("one", {R"({"OstraInterfacePort":{}})", R"({"RouterVtServerPort":{"Port":9}})",
                                 R"({"PelVtConnectServer":{"Address":"elsewhere"}})"}),
              text("{OstraInterfacePort:{Port:4294967295}} {RouterVtServerPort:{Port:2}} "
                   "{PelVtConnectServer:{Address:router,Port:3}} | "));
}

TEST(RouterRules, AnswerARequestWithoutFragmentsWithoutFragments)
{
    Router router;
    EXPECT_EQ(router.ask("one", QVector<QByteArray>()), text(" | "));
}

TEST(RouterRules, KeepTheTuningInItsRanges)
{
    Router router(R"({"ranges": {"Frequency": [20, 30], "Bandwidth": [-5, 5]}})");
    const auto now = [](const char* values) {
        return QStringLiteral("{DF_Params:{%1}} | {DF_Params:{%1}}").arg(QLatin1String(values));
    };
    EXPECT_EQ(router.ask("one", R"({"DF_Params":{}})"),
              text("{DF_Params:{Frequency:20,DemodulationFrequency:0,Bandwidth:0,PanoramaSpan:0}} | "))
        << "a question";
    EXPECT_EQ(router.ask("one", R"({"DF_Params":{"Frequency":25.5}})"),
              now("Frequency:25.5,DemodulationFrequency:0,Bandwidth:0,PanoramaSpan:0"));
    EXPECT_EQ(router.ask("one", R"({"DF_Params":{"Frequency":19,"Bandwidth":6,"PanoramaSpan":1e9}})"),
              now("Frequency:20,DemodulationFrequency:0,Bandwidth:5,PanoramaSpan:1000000000"));
    EXPECT_EQ(router.ask("one", R"({"DF_Params":{"Frequency":"Infinity","Bandwidth":"-Infinity"}})"),
              now("Frequency:30,DemodulationFrequency:0,Bandwidth:-5,PanoramaSpan:1000000000"));
    EXPECT_EQ(router.ask("one", R"({"DF_Params":{"Frequency":"NaN","DemodulationFrequency":4}})"),
              now("Frequency:30,DemodulationFrequency:4,Bandwidth:-5,PanoramaSpan:1000000000"));
    EXPECT_EQ(router.ask("two", R"({"DF_Params":{"Frequency":30}})"),
              now("Frequency:30,DemodulationFrequency:4,Bandwidth:-5,PanoramaSpan:1000000000"))
        << "told although nothing has changed";
}

TEST(RouterRules, LetOnlyTheMasterTuneIfTheScenarioSaysSo)
{
    Router router(R"({"onlyMasterTunes": true})");
    constexpr char five[] = R"({"DF_Params":{"Bandwidth":5}})";
    const QString unchanged =
        "{DF_Params:{Frequency:0,DemodulationFrequency:0,Bandwidth:0,PanoramaSpan:0}} | ";
    EXPECT_EQ(router.ask("one", five), unchanged);
    router.ask("one", acquire);
    EXPECT_EQ(router.ask("two", five), unchanged);
    EXPECT_TRUE(router.ask("one", five)
                    .endsWith("| {DF_Params:{Frequency:0,DemodulationFrequency:0,"
                              "Bandwidth:5,PanoramaSpan:0}}"));
}

TEST(RouterRules, CarryOutTheFragmentsInTheirOrder)
{
    Router router(R"({"onlyMasterTunes": true})");
    EXPECT_EQ(router.ask("one", {acquire, R"({"DF_Params":{"Frequency":5}})", release, release}),
              text("{AcquireMastership:{Success:true}} "
                   "{DF_Params:{Frequency:5,DemodulationFrequency:0,Bandwidth:0,PanoramaSpan:0}} "
                   "{ReleaseMastership:{Success:true}} {ReleaseMastership:{Success:false}} | ")
                  + oneIsMaster
                  + " {DF_Params:{Frequency:5,DemodulationFrequency:0,Bandwidth:0,PanoramaSpan:0}} "
                  + nobodyIsMaster);
}

TEST(RouterRules, FollowWhatHappens)
{
    Router router;
    EXPECT_EQ(router.happen(R"({"DF_Params":{"Bandwidth":5}})"),
              text("{DF_Params:{Frequency:0,DemodulationFrequency:0,Bandwidth:5,PanoramaSpan:0}}"));
    EXPECT_EQ(router.happen(R"({"OstraInterfacePort":{"Port":1}})"), text("{OstraInterfacePort:{Port:1}}"));
    router.happen(R"({"RouterVtServerPort":{"Port":2}})");
    router.happen(R"({"PelVtConnectServer":{"Address":"there","Port":3}})");
    router.happen(R"({"MastershipState":{"State":"RouterIsMaster"}})");
    EXPECT_EQ(router.happen(R"({"AcquireMastership":{"Success":true}})"),
              text("{AcquireMastership:{Success:true}}"))
        << "passed on as it is";
    EXPECT_EQ(router.ask("one", {R"({"OstraInterfacePort":{}})", R"({"RouterVtServerPort":{}})",
                                 R"({"PelVtConnectServer":{}})", mastership}),
              text("{OstraInterfacePort:{Port:1}} {RouterVtServerPort:{Port:2}} "
                   "{PelVtConnectServer:{Address:there,Port:3}} "
                   "{MastershipState:{State:RouterIsMaster}} | "));
}
