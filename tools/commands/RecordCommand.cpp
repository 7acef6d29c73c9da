// SPDX-License-Identifier: MIT
// The command `record`: writes what a server sends to a recording.

#include "Commands.h"
#include "documents/Text.h"
#include "wire/Connecting.h"
#include "wire/ExchangeLog.h"
#include "wire/Watcher.h"
#include "wire/WireLoop.h"

#include <QtNetwork/QTcpSocket>

#include <memory>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

class Recording
{
public:
    Recording(const Arguments& arguments, Session& session)
        : m_session(session), m_server(serverOf(arguments)),
          m_wait(waitOf(arguments, std::chrono::seconds(5))), m_path(arguments.text("FILE")),
          m_recorder(m_path)
    {}

    Status run()
    {
        WireLoop loop;
        QTcpSocket socket;
        socket.setReadBufferSize(Watcher::mostUnread);
        connectSocket(socket, m_server, m_wait, loop, [&] { begin(socket, loop); });
        loop.run();
        // The program was ended.
        if (m_watcher && !m_isOver) {
            m_watcher->end();
            add(eventNow(ConnectionEvent::Closed, Direction::Sent, m_peer));
        }
        tellResult();
        return m_faults > 0 || m_isLost ? Found : Fine;
    }

private:
    void begin(QTcpSocket& socket, WireLoop& loop)
    {
        m_peer = peerOf(socket);
        m_watcher = std::make_unique<Watcher>(Direction::Received, m_peer,
                                              [this](const Exchange& exchange) { add(exchange); });
        add(eventNow(ConnectionEvent::Connected, Direction::Sent, m_peer));
        QObject::connect(&socket, &QTcpSocket::readyRead, &socket,
                         loop.guarded([&] { m_watcher->addArrived(socket); }));
        QObject::connect(&socket, &QTcpSocket::disconnected, &socket, loop.guarded([&] {
            m_watcher->addArrived(socket);
            m_watcher->end();
            const QString fault = faultOf(socket);
            add(eventNow(ConnectionEvent::Closed, Direction::Received, m_peer, fault));
            m_isOver = true;
            m_isLost = !fault.isNull();
            if (m_isLost)
                m_session.complainInLine(connectionFinding(m_server, fault));
            loop.quit();
        }));
        m_watcher->addArrived(socket);
    }

    void add(const Exchange& exchange)
    {
        m_recorder.add(exchange);
        if (exchange.record)
            ++m_messages;
        if (exchange.record || exchange.event)
            return;
        ++m_faults;
        m_session.complainInLine(faultOf(exchange));
    }

    void tellResult()
    {
        if (m_session.format() == Format::Json)
            return m_session.writeJsonLine({{QStringLiteral("file"), m_path},
                                            {QStringLiteral("messages"), m_messages},
                                            {QStringLiteral("faults"), m_faults}});
        if (m_session.isQuiet())
            return;
        const auto counted = [](qint64 count, const char* one, const char* several) {
            return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : several));
        };
        m_session.out().writeLine(QStringLiteral("%1: %2 and %3 recorded")
                                      .arg(Printable(m_path), counted(m_messages, "message", "messages"),
                                           counted(m_faults, "fault", "faults")));
    }

    Session& m_session;
    const Endpoint m_server;
    const std::chrono::milliseconds m_wait;
    const QString m_path;
    Recorder m_recorder;
    std::unique_ptr<Watcher> m_watcher;
    QString m_peer;
    qint64 m_messages = 0;
    qint64 m_faults = 0;
    bool m_isOver = false;
    bool m_isLost = false;
};

} // namespace

Command recordCommand()
{
    CommandTable table;
    table.name = "record";
    table.summary = "Record what a server sends.";
    table.arguments = {serverArgument(), required(argument("FILE", fileValue(),
                                                           "The recording, to which lines are appended."))};
    table.options = {waitOption("How long the connection may take, such as 500ms or 1m; without it 5s.")};
    table.examples = {{"%1 record localhost:4711 events.jsonl", "All events of a router, until Ctrl-C."},
                      {"%1 list events.jsonl", "What was recorded."}};
    return {table, runShowing<Recording>};
}

} // namespace routermsg
