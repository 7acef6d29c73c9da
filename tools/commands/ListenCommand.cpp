// SPDX-License-Identifier: MIT
// The command `listen`: shows what clients send.

#include "Commands.h"
#include "wire/Connecting.h"
#include "wire/ExchangeLog.h"
#include "wire/Watcher.h"
#include "wire/WireLoop.h"

#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <set>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

class Visitor;
using Visitors = std::set<Visitor*>;

// Shows what comes over a connection that was accepted. The socket owns it.
class Visitor : public QObject
{
public:
    Visitor(QTcpSocket& socket, Visitors& visitors, ExchangeLog& log, WireLoop& loop)
        : QObject(&socket), m_socket(socket), m_visitors(visitors), m_log(log), m_peer(peerOf(socket)),
          m_watcher(Direction::Received, m_peer, [&log](const Exchange& exchange) { log.add(exchange); })
    {
        m_log.add(eventNow(ConnectionEvent::Connected, Direction::Received, m_peer));
        m_visitors.insert(this);
        connect(&socket, &QTcpSocket::readyRead, this, loop.guarded([this] { read(); }));
        connect(&socket, &QTcpSocket::disconnected, this, loop.guarded([this] { end(); }));
        // What has come before is not told again.
        read();
        if (socket.state() == QAbstractSocket::UnconnectedState)
            end();
    }

    ~Visitor() override { m_visitors.erase(this); }
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;

    // The program ends, and with it the connection.
    void leave()
    {
        m_watcher.end();
        m_log.add(eventNow(ConnectionEvent::Closed, Direction::Sent, m_peer));
    }

private:
    void read() { m_watcher.addArrived(m_socket); }

    void end()
    {
        read();
        m_watcher.end();
        m_log.add(eventNow(ConnectionEvent::Closed, Direction::Received, m_peer, faultOf(m_socket)));
        m_socket.deleteLater();
    }

    QTcpSocket& m_socket;
    Visitors& m_visitors;
    ExchangeLog& m_log;
    const QString m_peer;
    Watcher m_watcher;
};

Status listen(const Arguments& arguments, Session& session)
{
    return runShowing(session, [&] {
        const Endpoint endpoint = listenOf(arguments, "[HOST:]PORT");
        ExchangeLog log(arguments, session);
        WireLoop loop;
        Visitors visitors;
        QTcpServer server;
        QObject::connect(&server, &QTcpServer::newConnection, &server, loop.guarded([&] {
            while (QTcpSocket* const socket = server.nextPendingConnection()) {
                socket->setReadBufferSize(Watcher::mostUnread);
                new Visitor(*socket, visitors, log, loop);
            }
        }));
        listenAt(server, endpoint, session, loop);
        loop.run();
        for (Visitor* const visitor : visitors)
            visitor->leave();
        return log.status();
    });
}

} // namespace

Command listenCommand()
{
    CommandTable table;
    table.name = "listen";
    table.summary = "Show what clients send, and answer nothing.";
    table.arguments = {listenArgument(QStringLiteral("[HOST:]PORT"))};
    table.options = exchangeOptionRows();
    table.examples = {{"%1 listen 4711", "Show what programs on this machine send, until Ctrl-C."},
                      {"%1 listen 0.0.0.0:4711 --brief --record day.jsonl",
                       "Record what all machines send, and show a line for each message."},
                      {"%1 listen 4711 --to jsonl", "Only the messages, as JSON lines for other programs."}};
    return {table, listen};
}

} // namespace routermsg
