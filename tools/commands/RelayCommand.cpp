// SPDX-License-Identifier: MIT
// The command `relay`: passes on what clients and a server exchange, and shows it.

#include "Commands.h"
#include "wire/ByteRelay.h"
#include "wire/Connecting.h"
#include "wire/ExchangeLog.h"
#include "wire/Watcher.h"
#include "wire/WireLoop.h"

#include <QtCore/QObject>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <netinet/in.h>
#include <set>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

QString reasonOf(const std::system_error& error)
{
    return QString::fromStdString(error.code().message()) + QLatin1Char('.');
}

Direction opposite(Direction direction)
{
    return direction == Direction::ToServer ? Direction::ToClient : Direction::ToServer;
}

class Passage;

// All that there are. Those that are left are destroyed with it.
class Passages
{
public:
    Passages() = default;
    Passages(const Passages&) = delete;
    Passages& operator=(const Passages&) = delete;
    ~Passages();

    void add(Passage* passage) { m_all.insert(passage); }
    void remove(Passage* passage) { m_all.erase(passage); }
    // The program ends, and with it all connections.
    void leave() const;

private:
    std::set<Passage*> m_all;
};

// The connection of a client and that to the server. Nobody waits for what the watchers understand: they see
// the bytes that are passed on.
class Passage : public QObject
{
public:
    Passage(int client, const Endpoint& server, Passages& passages, ExchangeLog& log, WireLoop& loop)
        : m_client(client), m_endpoint(server), m_passages(passages), m_log(log), m_loop(loop),
          m_peer(peerOfDescriptor(client)),
          m_toServer(Direction::ToServer, m_peer, [&log](const Exchange& exchange) { log.add(exchange); }),
          m_toClient(Direction::ToClient, m_peer, [&log](const Exchange& exchange) { log.add(exchange); })
    {
        m_log.add(eventNow(ConnectionEvent::Connected, Direction::ToServer, m_peer));
        connect(&m_connector, &QTcpSocket::connected, this, m_loop.guarded([this] { begin(); }));
        connect(&m_connector, &QTcpSocket::stateChanged, this,
                m_loop.guarded([this](QAbstractSocket::SocketState state) {
                    if (state == QAbstractSocket::UnconnectedState && !m_server)
                        end(Direction::ToClient,
                            QStringLiteral("%1: %2").arg(m_endpoint.toText(), faultOf(m_connector)));
                }));
        m_passages.add(this);
        m_connector.connectToHost(server.host, server.port);
    }

    ~Passage() override { m_passages.remove(this); }
    Passage(const Passage&) = delete;
    Passage& operator=(const Passage&) = delete;

    // The program ends, and with it the connection.
    void leave() { tellEnd(Direction::Sent, QString()); }

private:
    // The socket has only connected. Reading and writing is done with its descriptor, because one direction
    // may end before the other.
    void begin()
    {
        try {
            const int descriptor =
                fcntl(static_cast<int>(m_connector.socketDescriptor()), F_DUPFD_CLOEXEC, 0);
            if (descriptor < 0)
                throw std::system_error(errno, std::generic_category());
            m_server = std::make_unique<WireEnd>(descriptor);
        } catch (const std::system_error& error) {
            return end(Direction::Sent, reasonOf(error));
        }
        m_connector.abort();
        m_up = pump(m_client, *m_server, Direction::ToServer, m_toServer);
        m_down = pump(*m_server, m_client, Direction::ToClient, m_toClient);
    }

    std::unique_ptr<BytePump> pump(WireEnd& source, WireEnd& target, Direction direction, Watcher& watcher)
    {
        BytePump::Receivers receivers;
        receivers.onBytes = m_loop.guarded([&watcher](const QByteArray& bytes) { watcher.add(bytes); });
        receivers.onEnd = m_loop.guarded([this, direction, &watcher] {
            watcher.end();
            if (!m_hasFirst)
                m_first = direction;
            m_hasFirst = true;
            if (m_up->isOver() && m_down->isOver())
                end(m_first, QString());
        });
        receivers.onFault = m_loop.guarded([this, direction](const QString& fault, bool isSource) {
            end(isSource ? direction : opposite(direction), fault);
        });
        return std::make_unique<BytePump>(source, target, receivers);
    }

    void end(Direction direction, const QString& fault)
    {
        if (m_isOver)
            return;
        m_client.stop();
        if (m_server)
            m_server->stop();
        // The side that is still there must not take a failure of the other one for a proper end.
        if (m_server && !fault.isNull()) {
            m_client.resetAtEnd();
            m_server->resetAtEnd();
        }
        deleteLater();
        tellEnd(direction, fault);
    }

    void tellEnd(Direction direction, const QString& fault)
    {
        if (m_isOver)
            return;
        m_isOver = true;
        m_toServer.end();
        m_toClient.end();
        m_log.add(eventNow(ConnectionEvent::Closed, direction, m_peer, fault));
    }

    WireEnd m_client;
    const Endpoint m_endpoint;
    Passages& m_passages;
    ExchangeLog& m_log;
    WireLoop& m_loop;
    const QString m_peer;
    Watcher m_toServer;
    Watcher m_toClient;
    QTcpSocket m_connector;
    std::unique_ptr<WireEnd> m_server;
    std::unique_ptr<BytePump> m_up;
    std::unique_ptr<BytePump> m_down;
    // Who has ended its direction first.
    Direction m_first = Direction::ToServer;
    bool m_hasFirst = false;
    bool m_isOver = false;
};

Passages::~Passages()
{
    while (!m_all.empty())
        delete *m_all.begin();
}

void Passages::leave() const
{
    for (Passage* const passage : m_all)
        passage->leave();
}

// Accepts clients as mere descriptors.
class RelayServer : public QTcpServer
{
public:
    explicit RelayServer(const std::function<void(int)>& onClient) : m_onClient(onClient) {}

protected:
    void incomingConnection(qintptr descriptor) override { m_onClient(static_cast<int>(descriptor)); }

private:
    const std::function<void(int)> m_onClient;
};

Status relay(const Arguments& arguments, Session& session)
{
    return runShowing(session, [&] {
        const Endpoint endpoint = listenOf(arguments, "LISTEN");
        const Endpoint server = serverOf(arguments);
        ExchangeLog log(arguments, session);
        WireLoop loop;
        Passages passages;
        RelayServer clients(loop.guarded([&](int client) {
            const QString peer = peerOfDescriptor(client);
            try {
                new Passage(client, server, passages, log, loop);
            } catch (const std::system_error& error) {
                log.add(eventNow(ConnectionEvent::Closed, Direction::Sent, peer, reasonOf(error)));
            }
        }));
        listenAt(clients, endpoint, session, loop);
        loop.run();
        clients.close();
        passages.leave();
        return log.status();
    });
}

} // namespace

Command relayCommand()
{
    CommandTable table;
    table.name = "relay";
    table.summary = "Pass on what clients and a server exchange, and show it.";
    table.arguments = {listenArgument(QStringLiteral("LISTEN")), serverArgument()};
    table.options = exchangeOptionRows();
    table.examples = {{"%1 relay 4712 localhost:4711",
                       "Clients connect to the port 4712; what they and the router say is shown."},
                      {"%1 relay 4712 localhost:4711 --brief --record session.jsonl",
                       "The same in short, with a recording."}};
    return {table, relay};
}

} // namespace routermsg
