// SPDX-License-Identifier: MIT
#include "simulator/SimulatorServer.h"

#include "simulator/FaultBytes.h"

#include "documents/DocumentError.h"

#include <QtNetwork/QTcpSocket>

#include <algorithm>
#include <map>
#include <utility>

namespace ROUTERSIM {

using MODELKIT::Failure;
using PELLU300ROUTERINTERFACEXML::Fragment;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage;
using ROUTERDOCUMENTS::ConnectionEvent;
using ROUTERDOCUMENTS::Direction;
using ROUTERDOCUMENTS::Exchange;
using ROUTERDOCUMENTS::Form;

struct SimulatorServer::Client
{
    Client(int clientNumber, QTcpSocket& socket, const Scenario& scenario, quint64 seed)
        : number(clientNumber), id(QStringLiteral("client-%1").arg(clientNumber)),
          connection(socket, scenario.limits, nullptr), rules(scenario, clientNumber, seed)
    {}

    const int number;
    const QString id;
    ClientConnection connection;
    RequestRules rules;
    // Requests that wait for the end of their delay.
    int waiting = 0;
    // Whether it is sent nothing any more.
    bool isMute = false;
};

namespace {

ClientConnection::Document messageOf(PelLu300RouterMessage::Type type,
                                     const RouterState::Fragments& fragments)
{
    ClientConnection::Document document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(type);
    for (const Fragment& fragment : fragments)
        message.AppendFragment(fragment);
    return document;
}

} // namespace

SimulatorServer::SimulatorServer(const Scenario& scenario, quint64 seed, Clock& clock, const Log& log)
    : m_scenario(scenario), m_seed(seed), m_clock(clock), m_log(log), m_router(scenario.router),
      m_deleting(*this, [this] { m_gone.clear(); })
{
    connect(&m_server, &QTcpServer::newConnection, this, &SimulatorServer::acceptClients);
    // Qt accepts nobody any more when, for example, the process has too many open files.
    connect(&m_server, &QTcpServer::acceptError, this, [this] {
        constexpr qint64 pause = 1000;
        m_clock.CallAfter(pause, *this, [this] {
            if (m_server.isListening())
                m_server.resumeAccepting();
        });
    });
}

SimulatorServer::~SimulatorServer() = default;

bool SimulatorServer::Listen(const QHostAddress& address, quint16 port)
{
    if (!m_server.listen(address, port))
        return false;
    startTimes(nullptr);
    return true;
}

void SimulatorServer::Close()
{
    m_server.close();
    while (!m_clients.empty())
        m_clients.back()->connection.Close({});
}

// --- clients ----------------------------------------------------------------------------------

void SimulatorServer::acceptClients()
{
    while (QTcpSocket* socket = m_server.nextPendingConnection())
        accept(*socket);
}

void SimulatorServer::accept(QTcpSocket& socket)
{
    const QString peer = nameOf(socket.peerAddress(), socket.peerPort());
    logEvent(Direction::Received, peer, ConnectionEvent::Connected);
    if (static_cast<int>(m_clients.size()) >= m_scenario.limits.clients) {
        logEvent(Direction::Sent, peer, ConnectionEvent::Closed,
                 QStringLiteral("No more than %1 clients are admitted.").arg(m_scenario.limits.clients));
        socket.abort();
        socket.deleteLater();
        return;
    }
    m_clients.push_back(std::make_unique<Client>(++m_lastNumber, socket, m_scenario, m_seed));
    Client& client = *m_clients.back();
    ClientConnection::Receiver receiver;
    receiver.message = [this, &client](const Document& document, Form form) {
        received(client, document, form);
    };
    receiver.refused = [this, peer](const Failure& failure, std::optional<Form> form,
                                    const QByteArray& bytes) {
        logBytes(Direction::Received, peer, form, bytes, failure.GetSentence());
    };
    receiver.closed = [this, &client](const Failure& failure, bool isByClient) {
        leave(client, failure, isByClient);
    };
    client.connection.Begin(receiver);
    startTimes(&client);
}

void SimulatorServer::leave(Client& client, const Failure& failure, bool isByClient)
{
    logEvent(isByClient ? Direction::Received : Direction::Sent, client.connection.GetPeer(),
             ConnectionEvent::Closed, failure.kind == Failure::None ? QString() : failure.GetSentence());
    const auto found = std::find_if(m_clients.begin(), m_clients.end(),
                                    [&](const auto& each) { return each.get() == &client; });
    m_gone.push_back(std::move(*found));
    m_clients.erase(found);
    m_deleting.Schedule();
    tellEach(m_router.Leave(client.id));
}

SimulatorServer::Client* SimulatorServer::find(int number) const
{
    const auto found = std::find_if(m_clients.begin(), m_clients.end(),
                                    [&](const auto& client) { return client->number == number; });
    return found == m_clients.end() ? nullptr : found->get();
}

// --- requests ---------------------------------------------------------------------------------

void SimulatorServer::received(Client& client, const Document& request, Form form)
{
    logMessage(Direction::Received, client, form, request);
    const PelLu300RouterMessage& message = request.GetPelLu300RouterMessage();
    if (!message.IsTypeSet() || message.GetType() != PelLu300RouterMessage::Request)
        return;
    const Decision decision = client.rules.Decide(message.GetFragment());
    if (decision.delay == 0)
        return answer(client, request, form, decision);
    if (++client.waiting >= m_scenario.limits.waitingRequests)
        client.connection.Pause();
    m_clock.CallAfter(decision.delay, client.connection, [this, &client, request, form, decision] {
        --client.waiting;
        client.connection.Resume();
        if (!client.connection.IsClosed())
            answer(client, request, form, decision);
    });
}

void SimulatorServer::answer(Client& client, const Document& request, Form form, const Decision& decision)
{
    const PelLu300RouterMessage& asked = request.GetPelLu300RouterMessage();
    const RouterState::Answer answer = m_router.CarryOut(
        client.id, asked.GetFragment(), [&decision](int index) { return decision.isRefused.at(index); });
    Document reply = messageOf(PelLu300RouterMessage::Reply, answer.reply);
    if (asked.IsMessageIDSet())
        reply.GetPelLu300RouterMessage().SetMessageID(asked.GetMessageID());
    bool isCut = false;
    if (decision.fault) {
        Randomness random(decision.faultSeed, 0);
        isCut = sendWrongly(client, reply, form, *decision.fault, random);
    } else {
        send(client, reply, form);
    }
    tellEach(answer.news);
    if (isCut)
        cut(client);
}

void SimulatorServer::tellEach(const Fragments& fragments)
{
    for (const Fragment& fragment : fragments)
        tell({fragment});
}

void SimulatorServer::tell(const Fragments& fragments)
{
    const Document event = messageOf(PelLu300RouterMessage::Event, fragments);
    // Encoded once for all clients that use the form.
    std::map<Form, QByteArray> bytes;
    for (const auto& client : m_clients) {
        const Form form = client->connection.GetForm();
        if (!client->isMute && bytes[form].isEmpty())
            bytes[form] = bytesOf(*client, event, form);
        sendAs(*client, event, form, bytes[form]);
    }
}

void SimulatorServer::send(Client& client, const Document& document, Form form)
{
    if (!client.isMute)
        sendAs(client, document, form, bytesOf(client, document, form));
}

void SimulatorServer::sendAs(Client& client, const Document& document, Form form, const QByteArray& bytes)
{
    if (!client.isMute && !bytes.isEmpty() && client.connection.Write(bytes))
        logMessage(Direction::Sent, client, form, document);
}

QByteArray SimulatorServer::bytesOf(Client& client, const Document& document, Form form)
{
    try {
        return encoded(document, form);
    } catch (const ROUTERDOCUMENTS::DocumentError& error) {
        client.connection.Fail(error.GetText());
        return {};
    }
}

// --- faults -----------------------------------------------------------------------------------

bool SimulatorServer::sendWrongly(Client& client, const Document& document, Form form, const Fault& fault,
                                  Randomness& random)
{
    switch (fault.kind) {
    case Fault::CutConnection:
        break;
    case Fault::HalfMessage: {
        const QByteArray bytes = bytesOf(client, document, form);
        const QByteArray half = firstHalf(bytes);
        sendBytes(client, half, form,
                  QStringLiteral("Only %1 of %2 bytes of a message were sent, as the scenario says.")
                      .arg(half.size())
                      .arg(bytes.size()));
        client.isMute = client.isMute || fault.then != Fault::GoOn;
        return fault.then == Fault::Cut;
    }
    case Fault::Garbage:
        sendBytes(client, garbage(fault.size, random), std::nullopt,
                  QStringLiteral("Garbage was sent, as the scenario says."));
        if (fault.then == Fault::GoOn)
            send(client, document, form);
        client.isMute = client.isMute || fault.then != Fault::GoOn;
        return fault.then == Fault::Cut;
    case Fault::WrongID: {
        Document wrong(document);
        PelLu300RouterMessage& message = wrong.GetPelLu300RouterMessage();
        message.SetMessageID(wrongID(message.GetMessageID(), random));
        send(client, wrong, form);
        return false;
    }
    case Fault::Silence:
        return false;
    }
    client.isMute = true;
    return true;
}

void SimulatorServer::sendBytes(Client& client, const QByteArray& bytes, std::optional<Form> form,
                                const QString& why)
{
    if (!client.isMute && client.connection.Write(bytes))
        logBytes(Direction::Sent, client.connection.GetPeer(), form, bytes, why);
}

void SimulatorServer::cut(Client& client)
{
    client.connection.Close(
        {Failure::InputOutput, QStringLiteral("The connection was cut, as the scenario says."), {}});
}

// --- what happens at times --------------------------------------------------------------------

void SimulatorServer::startTimes(Client* client)
{
    quint64 index = 0;
    for (const TimedEvent& event : m_scenario.events)
        start(event.timing, index++, client,
              [this, &event](Randomness&) { tell(m_router.Happen(event.fragments)); });
    for (const TimedFault& fault : m_scenario.timedFaults) {
        const int number = client ? client->number : 0;
        start(fault.timing, index++, client,
              [this, &fault, number](Randomness& random) { breakDown(fault, number, random); });
    }
}

void SimulatorServer::start(const Timing& timing, quint64 index, Client* client, const Happening& happening)
{
    if ((timing.since == Timing::Connection) != (client != nullptr))
        return;
    if (client && timing.client && *timing.client != client->number)
        return;
    // The streams with small numbers are those of the clients' requests.
    constexpr int clientBits = 32;
    const quint64 stream = ((index + 1) << clientBits) | (client ? static_cast<quint64>(client->number) : 0);
    const auto random = std::make_shared<Randomness>(m_seed, stream);
    QObject& context = client ? static_cast<QObject&>(client->connection) : *this;
    repeat(timing, random->In(timing.at), 1, context, random, happening);
}

void SimulatorServer::repeat(const Timing& timing, qint64 wait, int occurrence, QObject& context,
                             const std::shared_ptr<Randomness>& random, const Happening& happening)
{
    m_clock.CallAfter(wait, context, [this, &timing, occurrence, &context, random, happening] {
        // The next one is set before, because the connection may end now.
        if (timing.every && (!timing.times || occurrence < *timing.times))
            repeat(timing, *timing.every, occurrence + 1, context, random, happening);
        if (random->Happens(timing.probability))
            happening(*random);
    });
}

void SimulatorServer::breakDown(const TimedFault& fault, int client, Randomness& random)
{
    QVector<int> numbers;
    for (const auto& each : m_clients)
        if (client > 0 ? each->number == client
                       : !fault.timing.client || *fault.timing.client == each->number)
            numbers += each->number;
    for (const int number : numbers) {
        Client* const broken = find(number);
        if (!broken)
            continue;
        if (fault.fault.kind == Fault::Silence) {
            broken->isMute = true;
            continue;
        }
        // Nobody has asked for this.
        const bool isReply = fault.fault.kind == Fault::WrongID;
        const Document message =
            messageOf(isReply ? PelLu300RouterMessage::Reply : PelLu300RouterMessage::Event,
                      {m_router.Describe(Fragment::MastershipState)});
        if (sendWrongly(*broken, message, broken->connection.GetForm(), fault.fault, random))
            cut(*broken);
    }
}

// --- the log ----------------------------------------------------------------------------------

template <class Fill>
void SimulatorServer::writeLog(Direction direction, const QString& peer, const Fill& fill) const
{
    if (!m_log)
        return;
    Exchange exchange;
    exchange.direction = direction;
    exchange.peer = peer;
    fill(exchange);
    m_log(exchange);
}

void SimulatorServer::logMessage(Direction direction, const Client& client, Form form,
                                 const Document& document) const
{
    writeLog(direction, client.connection.GetPeer(), [&](Exchange& exchange) {
        exchange.form = form;
        exchange.record = std::make_shared<Document>(document);
    });
}

void SimulatorServer::logBytes(Direction direction, const QString& peer, std::optional<Form> form,
                               const QByteArray& bytes, const QString& fault) const
{
    writeLog(direction, peer, [&](Exchange& exchange) {
        exchange.form = form;
        exchange.bytes = bytes;
        exchange.fault = fault;
    });
}

void SimulatorServer::logEvent(Direction direction, const QString& peer, ConnectionEvent event,
                               const QString& fault) const
{
    writeLog(direction, peer, [&](Exchange& exchange) {
        exchange.event = event;
        exchange.fault = fault;
    });
}

} // namespace ROUTERSIM
