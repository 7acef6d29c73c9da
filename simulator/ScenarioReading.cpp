// SPDX-License-Identifier: MIT
// The keys of a scenario. docs/simulator.md describes them.
#include "simulator/Scenario.h"
#include "simulator/ScenarioValue.h"
#include "simulator/TuningMembers.h"

#include "documents/Sentences.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QFile>

#include <algorithm>
#include <cmath>
#include <functional>

namespace ROUTERSIM {

using namespace PELLU300ROUTERINTERFACEXML;

namespace {

constexpr qint64 longestTime = qint64(24) * 60 * 60 * 1000;
constexpr int largestSize = 1 << 30;

const char* const kinds[] = {"cutConnection", "halfMessage", "garbage", "wrongID", "silence"};
const char* const whatFollows[] = {"cut", "nothing", "goOn"};

template <class Enumeration, size_t count>
Enumeration named(const ScenarioValue& value, const char* const (&words)[count])
{
    QStringList names;
    for (const char* word : words)
        names += QString::fromLatin1(word);
    return static_cast<Enumeration>(names.indexOf(value.ToName(names)));
}

void forEach(ScenarioObject& object, const QString& key,
             const std::function<void(const ScenarioValue&)>& action)
{
    const ScenarioValue* const list = object.Find(key);
    if (!list)
        return;
    for (const ScenarioValue& item : list->GetItems())
        action(item);
}

// A number, or the least and the most.
Span readSpan(const ScenarioValue& value)
{
    if (!value.IsArray()) {
        const qint64 time = value.ToInteger(0, longestTime);
        return {time, time};
    }
    const std::vector<ScenarioValue>& ends = value.GetItems();
    if (ends.size() != 2)
        value.Refuse(QStringLiteral("Expected are two numbers, the least and the most."));
    const Span span = {ends[0].ToInteger(0, longestTime), ends[1].ToInteger(0, longestTime)};
    if (span.least > span.most)
        value.Refuse(QStringLiteral("The least is greater than the most."));
    return span;
}

// --- the router -------------------------------------------------------------------------------

void readRanges(ScenarioObject& ranges, RouterSettings& router)
{
    for (const TuningMember& member : tuningMembers) {
        const ScenarioValue* const found = ranges.Find(QString::fromLatin1(member.name));
        if (!found)
            continue;
        const std::vector<ScenarioValue>& ends = found->GetItems();
        if (ends.size() != 2)
            found->Refuse(QStringLiteral("Expected are two numbers, the least and the most."));
        constexpr double any = std::numeric_limits<double>::infinity();
        Range& range = router.*member.range;
        range = {ends[0].ToNumber(-any, any), ends[1].ToNumber(-any, any)};
        if (range.least > range.most)
            found->Refuse(QStringLiteral("The least is greater than the most."));
    }
    ranges.End();
}

// What a scenario says itself must fit its ranges; only what clients ask for is clamped.
void checkTuning(const DF_Params& tuning, const RouterSettings& router, const ScenarioValue& place)
{
    for (const TuningMember& member : tuningMembers) {
        if (!(tuning.*member.isSet)())
            continue;
        const double value = (tuning.*member.get)();
        const Range& range = router.*member.range;
        if (std::isnan(value) || value < range.least || value > range.most)
            place.Refuse(QStringLiteral("%1 is not in its range.").arg(QString::fromLatin1(member.name)));
    }
}

void checkMastership(const MastershipState& mastership, const ScenarioValue& place)
{
    if (!mastership.IsStateSet())
        place.Refuse(QStringLiteral("State is missing."));
    if (mastership.GetState() == MastershipState::MasterPresent && !mastership.IsMasterClientIDSet())
        place.Refuse(QStringLiteral("A master that is present needs a MasterClientID."));
}

template <class R>
void readRecord(ScenarioObject& object, R& record)
{
    const QString name = record.GetObjectName();
    if (const ScenarioValue* found = object.Find(name))
        record = dynamic_cast<const R&>(*found->ToRecord(name));
}

void readRouter(ScenarioObject& scenario, RouterSettings& router)
{
    scenario.Boolean(QStringLiteral("mayBeTakenFromRouter"), router.mayBeTakenFromRouter);
    scenario.Boolean(QStringLiteral("onlyMasterTunes"), router.onlyMasterTunes);
    if (const ScenarioValue* found = scenario.Find(QStringLiteral("ranges"))) {
        ScenarioObject ranges(*found);
        readRanges(ranges, router);
    }
    // What is not given begins at zero, or at the value of its range that is next to it.
    for (const TuningMember& member : tuningMembers) {
        const Range& range = router.*member.range;
        (router.tuning.*member.set)(std::clamp(0.0, range.least, range.most));
    }
    const ScenarioValue* const found = scenario.Find(QStringLiteral("state"));
    if (!found)
        return;
    ScenarioObject state(*found);
    readRecord(state, router.mastership);
    readRecord(state, router.ostraPort);
    readRecord(state, router.serverPort);
    readRecord(state, router.connectServer);
    DF_Params tuning;
    readRecord(state, tuning);
    for (const TuningMember& member : tuningMembers)
        if ((tuning.*member.isSet)())
            (router.tuning.*member.set)((tuning.*member.get)());
    state.End();
    checkMastership(router.mastership, *found);
    checkTuning(tuning, router, *found);
}

// --- requests ---------------------------------------------------------------------------------

RequestFilter readFilter(ScenarioObject& object)
{
    RequestFilter filter;
    if (const ScenarioValue* payload = object.Find(QStringLiteral("payload")))
        filter.payload = Fragment().NameToChoiceFragment(payload->ToName(Fragment::GetChoiceFragments()));
    object.Integer(QStringLiteral("client"), filter.client, 1);
    object.Integer(QStringLiteral("after"), filter.after);
    object.Integer(QStringLiteral("times"), filter.times, 1);
    object.Probability(filter.probability);
    return filter;
}

Refusal readRefusal(const ScenarioValue& value)
{
    ScenarioObject object(value);
    const Refusal refusal = {readFilter(object)};
    object.End();
    return refusal;
}

Delay readDelay(const ScenarioValue& value)
{
    ScenarioObject object(value);
    Delay delay;
    delay.filter = readFilter(object);
    const ScenarioValue* const span = object.Find(QStringLiteral("milliseconds"));
    object.End();
    if (!span)
        object.Refuse(QStringLiteral("The key \"milliseconds\" is missing."));
    delay.span = readSpan(*span);
    return delay;
}

// --- times ------------------------------------------------------------------------------------

// Whether the object has a time.
bool hasTiming(ScenarioObject& object)
{
    return object.Find(QStringLiteral("at")) || object.Find(QStringLiteral("afterConnection"));
}

Timing readTiming(ScenarioObject& object)
{
    const ScenarioValue* const at = object.Find(QStringLiteral("at"));
    const ScenarioValue* const afterConnection = object.Find(QStringLiteral("afterConnection"));
    if (!at == !afterConnection)
        object.Refuse(QStringLiteral("Expected is one of the keys \"at\" and \"afterConnection\"."));
    Timing timing;
    timing.since = at ? Timing::Start : Timing::Connection;
    timing.at = readSpan(at ? *at : *afterConnection);
    object.Integer(QStringLiteral("every"), timing.every, 1, longestTime);
    object.Integer(QStringLiteral("times"), timing.times, 1);
    object.Integer(QStringLiteral("client"), timing.client, 1);
    object.Probability(timing.probability);
    if (timing.times && !timing.every)
        object.Refuse(QStringLiteral("The key \"times\" needs the key \"every\"."));
    return timing;
}

Fragment readFragment(const ScenarioValue& value, const RouterSettings& router)
{
    const std::unique_ptr<MODELKIT::IMKObject> payload = value.ToRecord();
    const RecordInfo& info = RecordInfo::Of(Fragment());
    Fragment fragment;
    const MemberInfo* const member = info.FindMember(payload->GetObjectName());
    if (!member)
        value.Refuse(QStringLiteral("%1 is no payload; expected is %2.")
                         .arg(payload->GetObjectName(),
                              ROUTERDOCUMENTS::Alternatives(Fragment::GetChoiceFragments())));
    member->SetRecord(fragment, *payload);
    const Fragment& read = fragment;
    if (read.GetChoiceFragment() == Fragment::MastershipState)
        checkMastership(read.GetMastershipState(), value);
    if (read.GetChoiceFragment() == Fragment::DF_Params)
        checkTuning(read.GetDF_Params(), router, value);
    return fragment;
}

TimedEvent readEvent(const ScenarioValue& value, const RouterSettings& router)
{
    ScenarioObject object(value);
    TimedEvent event;
    event.timing = readTiming(object);
    if (event.timing.client && event.timing.since == Timing::Start)
        object.Refuse(
            QStringLiteral("The key \"client\" needs \"afterConnection\": all clients are told of events."));
    if (!object.Find(QStringLiteral("fragments")))
        object.Refuse(QStringLiteral("The key \"fragments\" is missing."));
    forEach(object, QStringLiteral("fragments"),
            [&](const ScenarioValue& item) { event.fragments += readFragment(item, router); });
    object.End();
    return event;
}

void readFault(const ScenarioValue& value, Scenario& scenario)
{
    ScenarioObject object(value);
    const ScenarioValue* const kind = object.Find(QStringLiteral("fault"));
    if (!kind)
        object.Refuse(QStringLiteral("The key \"fault\" is missing."));
    Fault fault;
    fault.kind = named<Fault::Kind>(*kind, kinds);
    if (fault.kind == Fault::HalfMessage || fault.kind == Fault::Garbage)
        if (const ScenarioValue* then = object.Find(QStringLiteral("then")))
            fault.then = named<Fault::Then>(*then, whatFollows);
    if (fault.kind == Fault::Garbage)
        object.Integer(QStringLiteral("size"), fault.size, 1, 1 << 20);
    if (hasTiming(object))
        scenario.timedFaults.append({readTiming(object), fault});
    else
        scenario.faults.append({readFilter(object), fault});
    object.End();
}

void readLimits(const ScenarioValue& value, ServerLimits& limits)
{
    ScenarioObject object(value);
    object.Integer(QStringLiteral("clients"), limits.clients, 1, 10000);
    object.Integer(QStringLiteral("queueSize"), limits.queueSize, 1, largestSize);
    object.Integer(QStringLiteral("messageSize"), limits.messageSize, 1, largestSize);
    object.Integer(QStringLiteral("waitingRequests"), limits.waitingRequests, 1, 100000);
    object.Integer(QStringLiteral("fragments"), limits.fragments, 0, 100000);
    object.End();
}

} // namespace

RouterSettings::RouterSettings()
{
    constexpr unsigned int ostra = 5001;
    constexpr unsigned int server = 5002;
    constexpr unsigned int connect = 5003;
    mastership.SetState(MastershipState::NoMasterPresent);
    ostraPort.SetPort(ostra);
    serverPort.SetPort(server);
    connectServer.SetAddress(QStringLiteral("127.0.0.1"));
    connectServer.SetPort(connect);
    for (const TuningMember& member : tuningMembers)
        (tuning.*member.set)(0);
}

Scenario ReadScenario(const QByteArray& json, const QString& name)
{
    const ScenarioValue value = ScenarioValue::Read(json, name);
    ScenarioObject object(value);
    Scenario scenario;
    readRouter(object, scenario.router);
    forEach(object, QStringLiteral("refusals"),
            [&](const ScenarioValue& item) { scenario.refusals.append(readRefusal(item)); });
    forEach(object, QStringLiteral("delays"),
            [&](const ScenarioValue& item) { scenario.delays.append(readDelay(item)); });
    forEach(object, QStringLiteral("events"),
            [&](const ScenarioValue& item) { scenario.events.append(readEvent(item, scenario.router)); });
    forEach(object, QStringLiteral("faults"), [&](const ScenarioValue& item) { readFault(item, scenario); });
    if (const ScenarioValue* limits = object.Find(QStringLiteral("limits")))
        readLimits(*limits, scenario.limits);
    object.End();
    return scenario;
}

Scenario LoadScenario(const QString& path)
{
    constexpr qint64 largest = 16 << 20;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw ScenarioError(QStringLiteral("%1: %2").arg(path, file.errorString()));
    const QByteArray json = file.read(largest + 1);
    if (file.error() != QFileDevice::NoError)
        throw ScenarioError(QStringLiteral("%1: %2").arg(path, file.errorString()));
    if (json.size() > largest)
        throw ScenarioError(
            QStringLiteral("%1: The scenario is larger than %2 bytes.").arg(path).arg(largest));
    return ReadScenario(json, path);
}

} // namespace ROUTERSIM
