// SPDX-License-Identifier: MIT
// The simulated router on the network.
#pragma once

#include "simulator/ClientConnection.h"
#include "simulator/Clock.h"
#include "simulator/RequestRules.h"
#include "simulator/RouterState.h"
#include "simulator/Scenario.h"

#include "documents/Exchange.h"
#include "link/Later.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpServer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace ROUTERSIM {

class SimulatorServer : public QObject
{
public:
    // Called for everything that comes and goes.
    using Log = std::function<void(const ROUTERDOCUMENTS::Exchange&)>;

    // The seed decides everything that is left to chance.
    SimulatorServer(const Scenario& scenario, quint64 seed, Clock& clock, const Log& log = {});
    ~SimulatorServer() override;

    // Port 0 is any free one. False when that is impossible; the reason is in GetError().
    bool Listen(const QHostAddress& address, quint16 port);
    QString GetError() const { return m_server.errorString(); }
    // Where it listens: "127.0.0.1:4711".
    QString GetName() const { return nameOf(m_server.serverAddress(), m_server.serverPort()); }
    quint16 GetPort() const { return m_server.serverPort(); }
    // Ends all connections.
    void Close();

private:
    using Fragments = RouterState::Fragments;
    using Document = ClientConnection::Document;
    using Happening = std::function<void(Randomness&)>;
    struct Client;

    void acceptClients();
    void accept(QTcpSocket& socket);
    void leave(Client& client, const MODELKIT::Failure& failure, bool isByClient);
    // Null when it is not connected.
    Client* find(int number) const;

    void received(Client& client, const Document& request, ROUTERDOCUMENTS::Form form);
    void answer(Client& client, const Document& request, ROUTERDOCUMENTS::Form form,
                const Decision& decision);
    void send(Client& client, const Document& document, ROUTERDOCUMENTS::Form form);
    // Empty, and the connection is going to be closed, when the form cannot represent the message.
    static QByteArray bytesOf(Client& client, const Document& document, ROUTERDOCUMENTS::Form form);
    // What the fault makes of the message. True when the connection is to be cut now.
    bool sendWrongly(Client& client, const Document& document, ROUTERDOCUMENTS::Form form, const Fault& fault,
                     Randomness& random);
    // Bytes that are no message.
    void sendAs(Client& client, const Document& document, ROUTERDOCUMENTS::Form form,
                const QByteArray& bytes);
    void sendBytes(Client& client, const QByteArray& bytes, std::optional<ROUTERDOCUMENTS::Form> form,
                   const QString& why);
    void cut(Client& client);

    // Tells all clients each fragment in an event of its own, or all in one.
    void tellEach(const Fragments& fragments);
    void tell(const Fragments& fragments);

    // Starts what happens at times: since the start of the simulator, or the connection of the client.
    void startTimes(Client* client);
    void start(const Timing& timing, quint64 index, Client* client, const Happening& happening);
    void repeat(const Timing& timing, qint64 wait, int occurrence, QObject& context,
                const std::shared_ptr<Randomness>& random, const Happening& happening);
    void breakDown(const TimedFault& fault, int client, Randomness& random);

    template <class Fill>
    void writeLog(ROUTERDOCUMENTS::Direction direction, const QString& peer, const Fill& fill) const;
    void logMessage(ROUTERDOCUMENTS::Direction direction, const Client& client, ROUTERDOCUMENTS::Form form,
                    const Document& document) const;
    void logBytes(ROUTERDOCUMENTS::Direction direction, const QString& peer,
                  std::optional<ROUTERDOCUMENTS::Form> form, const QByteArray& bytes,
                  const QString& fault) const;
    void logEvent(ROUTERDOCUMENTS::Direction direction, const QString& peer,
                  ROUTERDOCUMENTS::ConnectionEvent event, const QString& fault = {}) const;

    const Scenario m_scenario;
    const quint64 m_seed;
    Clock& m_clock;
    const Log m_log;
    QTcpServer m_server;
    RouterState m_router;
    int m_lastNumber = 0;
    std::vector<std::unique_ptr<Client>> m_clients;
    // They are deleted when none of their functions runs.
    std::vector<std::unique_ptr<Client>> m_gone;
    ROUTERLINK::Later m_deleting;
};

} // namespace ROUTERSIM
