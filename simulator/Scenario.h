// SPDX-License-Identifier: MIT
// What the simulated router is, and what it does wrong.
#pragma once

#include "routerinterface/DF_Params.h"
#include "routerinterface/Fragment.h"
#include "routerinterface/MastershipState.h"
#include "routerinterface/OstraInterfacePort.h"
#include "routerinterface/PelVtConnectServer.h"
#include "routerinterface/RouterVtServerPort.h"

#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtCore/QtGlobal>

#include <exception>
#include <limits>
#include <optional>

namespace ROUTERSIM {

using Payload = PELLU300ROUTERINTERFACEXML::Fragment::ChoiceFragment;

// Milliseconds; each is as likely as the others.
struct Span
{
    qint64 least = 0;
    qint64 most = 0;
};

// The values that a member of DF_Params can have.
struct Range
{
    double least = -std::numeric_limits<double>::infinity();
    double most = std::numeric_limits<double>::infinity();
};

// The router at its start, and its rules.
struct RouterSettings
{
    RouterSettings();

    PELLU300ROUTERINTERFACEXML::MastershipState mastership;
    PELLU300ROUTERINTERFACEXML::OstraInterfacePort ostraPort;
    PELLU300ROUTERINTERFACEXML::RouterVtServerPort serverPort;
    PELLU300ROUTERINTERFACEXML::PelVtConnectServer connectServer;
    PELLU300ROUTERINTERFACEXML::DF_Params tuning;

    Range frequency;
    Range demodulationFrequency;
    Range bandwidth;
    Range panoramaSpan;

    // Whether a client becomes master although the router is.
    bool mayBeTakenFromRouter = false;
    bool onlyMasterTunes = false;
};

// Which requests something is for. It counts the requests of each client on its own.
struct RequestFilter
{
    // Without one, all requests.
    std::optional<Payload> payload;
    // The number of the client in the order of connecting, from 1.
    std::optional<int> client;
    // How many fitting requests pass first.
    int after = 0;
    // At most so often.
    std::optional<int> times;
    double probability = 1;
};

struct Refusal
{
    RequestFilter filter;
};

struct Delay
{
    RequestFilter filter;
    Span span;
};

struct Fault
{
    enum Kind
    {
        CutConnection,
        HalfMessage,
        Garbage,
        WrongID,
        Silence
    };
    // What follows half a message or garbage.
    enum Then
    {
        Cut,     // the end of the connection
        Nothing, // on this connection any more
        GoOn     // as if nothing had happened
    };

    Kind kind = Silence;
    Then then = Cut;
    // Of garbage, in bytes.
    int size = 64;
};

struct RequestFault
{
    RequestFilter filter;
    Fault fault;
};

// When something happens without a request.
struct Timing
{
    enum Since
    {
        Start,     // of the simulator
        Connection // of a client
    };

    Since since = Start;
    Span at;
    // Then again and again.
    std::optional<qint64> every;
    // At most so often.
    std::optional<int> times;
    std::optional<int> client;
    double probability = 1;
};

struct TimedEvent
{
    Timing timing;
    QVector<PELLU300ROUTERINTERFACEXML::Fragment> fragments;
};

struct TimedFault
{
    Timing timing;
    Fault fault;
};

struct ServerLimits
{
    // Connected at the same time.
    int clients = 64;
    // Of one client: what waits to be sent in bytes, the size of a message in bytes, and requests that wait
    // for the end of their delay.
    int queueSize = 1 << 20;
    int messageSize = 1 << 20;
    int waitingRequests = 100;
    // Of one message. Each may cause an event for all clients.
    int fragments = 100;
};

struct Scenario
{
    RouterSettings router;
    QVector<Refusal> refusals;
    QVector<Delay> delays;
    QVector<RequestFault> faults;
    QVector<TimedEvent> events;
    QVector<TimedFault> timedFaults;
    ServerLimits limits;
};

class ScenarioError : public std::exception
{
public:
    // One line: where, and what is wrong.
    explicit ScenarioError(const QString& text) : m_text(text), m_utf8(text.toUtf8()) {}

    const QString& GetText() const { return m_text; }
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_text;
    QByteArray m_utf8;
};

// Both throw a ScenarioError. The name stands in its text.
Scenario ReadScenario(const QByteArray& json, const QString& name);
Scenario LoadScenario(const QString& path);

} // namespace ROUTERSIM
