// SPDX-License-Identifier: MIT
#include "wire/Connecting.h"

#include "Session.h"
#include "documents/Text.h"
#include "wire/WireLoop.h"

#include <QtCore/QTimer>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QHostInfo>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <unistd.h>
#include <utility>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using std::chrono::milliseconds;

namespace {

struct TimeUnit
{
    const char* name;
    qint64 inMilliseconds;
};

// Those with longer names go first.
constexpr TimeUnit timeUnits[] = {{"ms", 1}, {"s", 1000}, {"m", 60000}};
// What a timer can wait.
constexpr qint64 longestWait = std::numeric_limits<int>::max();

// Negative when the text is no time.
qint64 millisecondsIn(const QString& text)
{
    const auto* const unit =
        std::find_if(std::begin(timeUnits), std::end(timeUnits),
                     [&](const TimeUnit& one) { return text.endsWith(QLatin1String(one.name)); });
    if (unit == std::end(timeUnits))
        return -1;
    const QString number = text.left(text.size() - static_cast<int>(qstrlen(unit->name)));
    const bool isNumber = !number.isEmpty() && std::all_of(number.begin(), number.end(), [](QChar c) {
        return c >= u'0' && c <= u'9';
    });
    bool fits = false;
    const qint64 count = number.toLongLong(&fits);
    return isNumber && fits && count <= longestWait / unit->inMilliseconds ? count * unit->inMilliseconds
                                                                           : -1;
}

QString withFullStop(const QString& text)
{
    return text.endsWith(QLatin1Char('.')) ? text : text + QLatin1Char('.');
}

QHostAddress addressOf(const Endpoint& endpoint)
{
    const QHostAddress address(endpoint.host);
    if (!address.isNull())
        return address;
    const QHostInfo info = QHostInfo::fromName(endpoint.host);
    if (info.addresses().isEmpty())
        throw Refusal(connectionFinding(endpoint, QStringLiteral("The host is not known.")));
    return info.addresses().constFirst();
}

// Empty when another file can be opened.
QString whyNoMoreFiles(const QTcpServer& server)
{
    const int copy = fcntl(static_cast<int>(server.socketDescriptor()), F_DUPFD_CLOEXEC, 0);
    if (copy < 0)
        return withFullStop(qt_error_string(errno));
    ::close(copy);
    return QString();
}

// Qt tries again and again to accept a client when too many files are open, and does not tell that. A client
// takes more files soon after it was accepted, so this looks twice.
void pauseWhenFull(QTcpServer& server, Session& session, WireLoop& loop)
{
    auto* const timer = new QTimer(&server);
    timer->setSingleShot(true);
    timer->setInterval(milliseconds(200));
    const auto isTold = std::make_shared<bool>(false);
    const auto look = loop.guarded([=, &server, &session] {
        const QString reason = whyNoMoreFiles(server);
        if (reason.isEmpty()) {
            *isTold = false;
            return server.resumeAccepting();
        }
        server.pauseAccepting();
        timer->start();
        if (std::exchange(*isTold, true))
            return;
        Finding finding;
        finding.severity = Finding::Warning;
        finding.text = QStringLiteral("Further clients have to wait: %1").arg(reason);
        session.complainInLine(finding);
    });
    QObject::connect(timer, &QTimer::timeout, &server, look);
    QObject::connect(&server, &QTcpServer::newConnection, &server, [timer, look] {
        timer->start();
        look();
    });
    QObject::connect(&server, &QTcpServer::acceptError, &server, [timer, &server] {
        server.pauseAccepting();
        timer->start();
    });
}

} // namespace

OptionTable waitOption(const QString& text)
{
    return suggesting({"500ms", "5s", "1m"}, option({"--wait"}, "TIME", text));
}

milliseconds waitOf(const Arguments& arguments, milliseconds otherwise)
{
    if (!arguments.isGiven("--wait"))
        return otherwise;
    const QString text = arguments.text("--wait");
    const qint64 time = millisecondsIn(text);
    if (time < 0)
        arguments.refuse(QStringLiteral("%1 is no value of --wait. Write a number with ms, s or m behind it, "
                                        "such as 500ms, 5s or 1m; at most %2m.")
                             .arg(Quoted(text))
                             .arg(longestWait / 60000));
    return milliseconds(time);
}

milliseconds patienceOf(milliseconds wait) { return std::max(wait, milliseconds(5000)); }

QString textOf(milliseconds time)
{
    const qint64 count = time.count();
    return count % 1000 == 0 ? QStringLiteral("%1s").arg(count / 1000) : QStringLiteral("%1ms").arg(count);
}

QString faultOf(const QAbstractSocket& socket)
{
    switch (socket.error()) {
    case QAbstractSocket::UnknownSocketError:
    case QAbstractSocket::RemoteHostClosedError:
        return QString();
    case QAbstractSocket::ConnectionRefusedError:
        return QStringLiteral("The connection was refused: no program listens there.");
    case QAbstractSocket::HostNotFoundError:
        return QStringLiteral("The host is not known.");
    default:
        return withFullStop(socket.errorString());
    }
}

Finding connectionFinding(const Endpoint& endpoint, const QString& text)
{
    return Finding::ofFile(endpoint.toText(), text);
}

void connectSocket(QTcpSocket& socket, const Endpoint& endpoint, milliseconds longest, WireLoop& loop,
                   const std::function<void()>& onConnected)
{
    const auto isOver = std::make_shared<bool>(false);
    const auto refuse = [endpoint, isOver](const QString& text) {
        *isOver = true;
        throw Refusal(connectionFinding(endpoint, text));
    };
    QObject::connect(&socket, &QTcpSocket::connected, &socket, loop.guarded([=] {
        *isOver = true;
        onConnected();
    }));
    // Qt 6 tells errors by another signal than Qt 5.12, and both of them change the state.
    QObject::connect(&socket, &QTcpSocket::stateChanged, &socket,
                     loop.guarded([=, &socket](QAbstractSocket::SocketState state) {
                         if (state == QAbstractSocket::UnconnectedState && !*isOver)
                             refuse(faultOf(socket));
                     }));
    callAfter(longest, socket, loop.guarded([=] {
        if (!*isOver)
            refuse(QStringLiteral("There was no connection within %1.").arg(textOf(longest)));
    }));
    socket.connectToHost(endpoint.host, endpoint.port);
}

void listenAt(QTcpServer& server, const Endpoint& endpoint, Session& session, WireLoop& loop)
{
    if (!server.listen(addressOf(endpoint), endpoint.port)) {
        const bool isTaken = server.serverError() == QAbstractSocket::AddressInUseError;
        throw Refusal(connectionFinding(endpoint, isTaken ? QStringLiteral("Another program listens there.")
                                                          : withFullStop(server.errorString())));
    }
    // With a port of its own choice, the program could not be found otherwise.
    if (endpoint.port == 0 || !session.isQuiet())
        session.complain(
            QStringLiteral("Listening on %1.").arg(Endpoint{endpoint.host, server.serverPort()}.toText()));
    pauseWhenFull(server, session, loop);
}

} // namespace routermsg
