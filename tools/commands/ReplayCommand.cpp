// SPDX-License-Identifier: MIT
// The command `replay`: sends to a server what was sent before.

#include "Commands.h"
#include "Saving.h"
#include "documents/Text.h"
#include "wire/Connecting.h"
#include "wire/ExchangeLog.h"
#include "wire/Parting.h"
#include "wire/PlayedItems.h"
#include "wire/Watcher.h"
#include "wire/WireLoop.h"

#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QHash>
#include <QtCore/QScopeGuard>
#include <QtCore/QTimer>
#include <QtNetwork/QTcpSocket>

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage;

namespace {

// How often as fast as recorded; 0 for no pauses.
double speedOf(const Arguments& arguments)
{
    const QString text = arguments.text("--speed");
    if (text.isEmpty() || text == QLatin1String("max"))
        return text.isEmpty() ? 1 : 0;
    bool isNumber = false;
    const double speed = text.toDouble(&isNumber);
    if (!isNumber || !(speed >= 0) || speed > std::numeric_limits<float>::max())
        arguments.refuse(
            QStringLiteral(
                "%1 is no value of --speed. Write a number such as 2 or 0.5, or max for no pauses.")
                .arg(Quoted(text)));
    return speed;
}

OptionTable directionOption()
{
    return choice(
        {"--direction"}, "DIRECTION", {"sent", "received"},
        "Which recorded exchanges are sent: those with the direction sent or toServer, or those with "
        "received or toClient; without it sent.");
}

Played playedOf(const Arguments& arguments)
{
    return arguments.choice<Played>("--direction").value_or(Played::Sent);
}

class Replay
{
public:
    Replay(const Arguments& arguments, Session& session)
        : m_session(session), m_server(serverOf(arguments)),
          m_wait(waitOf(arguments, std::chrono::seconds(5))), m_speed(speedOf(arguments)),
          m_items(playedItems(arguments.text("FILE"), playedOf(arguments))), m_log(arguments, session)
    {}

    Status run()
    {
        WireLoop loop;
        QTcpSocket socket;
        m_loop = &loop;
        m_socket = &socket;
        socket.setReadBufferSize(Watcher::mostUnread);
        // It must not outlive the socket.
        const auto partingEnd = qScopeGuard([this] { m_parting.reset(); });
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, &socket, loop.guarded([this] { sendOn(); }));
        connectSocket(socket, m_server, patienceOf(m_wait), loop, [this] { begin(); });
        loop.run();
        if (loop.isInterrupted())
            leave();
        return std::max(m_status, m_log.status());
    }

private:
    void begin()
    {
        m_peer = peerOf(*m_socket);
        m_watcher = std::make_unique<Watcher>(Direction::Received, m_peer,
                                              [this](const Exchange& exchange) { take(exchange); });
        m_parting = std::make_unique<Parting>(
            *m_socket, [this] { return m_socket->bytesToWrite(); }, m_server, patienceOf(m_wait), *m_loop);
        m_log.add(eventNow(ConnectionEvent::Connected, Direction::Sent, m_peer));
        QObject::connect(m_socket, &QTcpSocket::readyRead, m_socket, m_loop->guarded([this] { read(); }));
        QObject::connect(m_socket, &QTcpSocket::disconnected, m_socket, m_loop->guarded([this] { end(); }));
        QObject::connect(m_socket, &QTcpSocket::bytesWritten, m_socket, m_loop->guarded([this](qint64 size) {
            m_written += size;
            closeWhenDone();
        }));
        sendOn();
    }

    // Sends what is due.
    void sendOn()
    {
        while (m_next < m_items.size() && !m_isClosed) {
            send(m_items[m_next++]);
            const qint64 pause = m_next < m_items.size() ? pauseBefore(m_next) : 0;
            if (pause > 0)
                return m_timer.start(
                    static_cast<int>(std::min<qint64>(pause, std::numeric_limits<int>::max())));
        }
        closeWhenDone();
    }

    qint64 pauseBefore(std::size_t index) const
    {
        const QDateTime& before = m_items[index - 1].exchange.time;
        const QDateTime& time = m_items[index].exchange.time;
        if (m_speed == 0 || !m_items[index].isTimed || !m_items[index - 1].isTimed)
            return 0;
        constexpr double longest = std::numeric_limits<int>::max();
        return static_cast<qint64>(std::min(static_cast<double>(before.msecsTo(time)) / m_speed, longest));
    }

    void send(const PlayedItem& item)
    {
        if (m_socket->write(item.bytes) != item.bytes.size())
            throw Refusal(connectionFinding(m_server, QStringLiteral("Not everything can be sent.")));
        Exchange exchange = item.exchange;
        exchange.time = QDateTime::currentDateTimeUtc();
        exchange.direction = Direction::Sent;
        exchange.peer = m_peer;
        if (const auto* const message = messageIn(exchange, PelLu300RouterMessage::Request))
            ++m_waiting[message->GetMessageID()];
        m_log.add(exchange);
    }

    void read() { m_watcher->addArrived(*m_socket); }

    void take(const Exchange& exchange)
    {
        m_log.add(exchange);
        if (const auto* const message = messageIn(exchange, PelLu300RouterMessage::Reply))
            removeWaiting(message->GetMessageID());
        closeWhenDone();
    }

    static const PelLu300RouterMessage* messageIn(const Exchange& exchange, PelLu300RouterMessage::Type type)
    {
        const auto* const document = dynamic_cast<const PelLu300RouterInterfaceXml*>(exchange.record.get());
        if (!document)
            return nullptr;
        const PelLu300RouterMessage& message = document->GetPelLu300RouterMessage();
        return message.IsTypeSet() && message.GetType() == type ? &message : nullptr;
    }

    void closeWhenDone()
    {
        if (m_next < m_items.size() || m_isClosed || m_isClosing)
            return;
        m_parting->watch();
        if (m_socket->bytesToWrite() > 0)
            return;
        if (m_waiting.isEmpty())
            return close();
        if (!std::exchange(m_isWaiting, true))
            callAfter(m_wait, *m_socket, m_loop->guarded([this] { giveUp(); }));
    }

    void giveUp()
    {
        if (m_isClosed || m_isClosing)
            return;
        complain(QStringLiteral("%1 within %2.").arg(repliesMissing(), textOf(m_wait)), Found);
        close();
    }

    QString repliesMissing() const
    {
        const int count = std::accumulate(m_waiting.begin(), m_waiting.end(), 0);
        return count == 1 ? QStringLiteral("1 request got no reply")
                          : QStringLiteral("%1 requests got no reply").arg(count);
    }

    void removeWaiting(unsigned int messageID)
    {
        const auto found = m_waiting.find(messageID);
        if (found != m_waiting.end() && --*found == 0)
            m_waiting.erase(found);
    }

    // Not inside of a signal of the socket.
    void close()
    {
        m_isClosing = true;
        callAfter(std::chrono::milliseconds(0), *m_socket,
                  m_loop->guarded([this] { m_parting->begin([this] { m_socket->disconnectFromHost(); }); }));
    }

    void end()
    {
        m_isClosed = true;
        m_timer.stop();
        read();
        m_watcher->end();
        const QString fault = m_parting->wasReset() ? resetAfterSending() : faultOf(*m_socket);
        m_log.add(eventNow(ConnectionEvent::Closed, m_isClosing ? Direction::Sent : Direction::Received,
                           m_peer, fault));
        if (unsent() > 0)
            complainOfUnsent();
        else if (!m_waiting.isEmpty() && !m_isClosing)
            complain(QStringLiteral("The connection has ended before all replies came."), Failed);
        else if (m_parting->wasReset())
            complain(fault, Failed);
        m_loop->quit();
    }

    // A signal has ended the loop.
    void leave()
    {
        if (m_watcher && !m_isClosed) {
            m_watcher->end();
            m_log.add(eventNow(ConnectionEvent::Closed, Direction::Sent, m_peer));
        }
        if (unsent() > 0)
            complainOfUnsent();
        if (!m_waiting.isEmpty() && !m_isClosing)
            complain(QStringLiteral("%1: The program was ended.").arg(repliesMissing()), Failed);
    }

    // How many messages the system has not taken whole.
    std::size_t unsent() const
    {
        qint64 end = 0;
        const auto first = std::find_if(m_items.begin(), m_items.end(), [&](const PlayedItem& item) {
            end += item.bytes.size();
            return end > m_written;
        });
        return static_cast<std::size_t>(m_items.end() - first);
    }

    void complainOfUnsent()
    {
        complain(QStringLiteral("%1 of %2 messages were not sent.").arg(unsent()).arg(m_items.size()),
                 Failed);
    }

    void complain(const QString& text, Status status)
    {
        Finding finding = connectionFinding(m_server, text);
        finding.status = status;
        m_session.complainInLine(finding);
        m_status = std::max(m_status, status);
    }

    Session& m_session;
    const Endpoint m_server;
    const std::chrono::milliseconds m_wait;
    const double m_speed;
    const std::vector<PlayedItem> m_items;
    ExchangeLog m_log;
    WireLoop* m_loop = nullptr;
    QTcpSocket* m_socket = nullptr;
    QTimer m_timer;
    std::unique_ptr<Watcher> m_watcher;
    std::unique_ptr<Parting> m_parting;
    QString m_peer;
    std::size_t m_next = 0;
    // How many requests wait for a reply with each number. Requests of several clients can have the same one.
    QHash<unsigned int, int> m_waiting;
    // Bytes that the system has taken.
    qint64 m_written = 0;
    // Whether a timer limits how long the last replies may take.
    bool m_isWaiting = false;
    bool m_isClosing = false;
    bool m_isClosed = false;
    Status m_status = Fine;
};

} // namespace

Command replayCommand()
{
    CommandTable table;
    table.name = "replay";
    table.summary = "Send a recording to a server again.";
    table.arguments = {
        required(
            argument("FILE", fileValue(),
                     "The recording, or - for standard input. Of recorded exchanges, those are sent that a "
                     "client has sent; of other recordings, all messages.")),
        serverArgument()};
    table.options =
        QVector<OptionTable>{
            suggesting({"1", "10", "max"}, option({"--speed"}, "X",
                                                  "How often as fast as it was recorded, such as 2 or 0.5; 0 "
                                                  "or max for no pauses.")),
            directionOption(),
            waitOption(
                "How long replies may take behind the last message, such as 500ms or 1m; without it 5s.")}
        + exchangeOptionRows();
    table.examples = {
        {"%1 replay session.jsonl localhost:4711", "All that the clients have sent, with the pauses."},
        {"%1 replay week.rec localhost:4711 --speed max --brief", "All messages, as fast as possible."}};
    return {table, runShowing<Replay>};
}

} // namespace routermsg
