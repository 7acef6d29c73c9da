// SPDX-License-Identifier: MIT
#include "wire/Endpoint.h"

#include "Arguments.h"
#include "documents/Text.h"

#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpSocket>

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <optional>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

constexpr quint16 largestPort = 65535;

std::optional<quint16> portIn(const QString& text, int smallest)
{
    const bool isNumber = !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= u'0' && c <= u'9';
    });
    bool fits = false;
    const int port = text.toInt(&fits);
    if (!isNumber || !fits || port < smallest || port > largestPort)
        return std::nullopt;
    return static_cast<quint16>(port);
}

// Takes the text apart. The host is empty when there is none.
struct Parts
{
    explicit Parts(const QString& text)
    {
        const auto colon = text.lastIndexOf(QLatin1Char(':'));
        host = text.left(std::max<decltype(colon)>(colon, 0));
        port = text.mid(colon + 1);
        hasColon = colon >= 0;
        const bool isBracketed = host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']'));
        if (isBracketed)
            host = host.mid(1, host.size() - 2);
        isClear = isBracketed || !host.contains(QLatin1Char(':'));
    }

    QString host;
    QString port;
    bool hasColon = false;
    // Whether no colon of an address could be the one in front of the port.
    bool isClear = false;
};

[[noreturn]] void refuseEndpoint(const Arguments& arguments, const QString& text, const QString& what)
{
    arguments.refuse(QStringLiteral("%1 is no %2.").arg(Quoted(text), what));
}

Endpoint endpointIn(const Arguments& arguments, const QString& text, const Parts& parts, int smallestPort)
{
    if (!parts.isClear)
        refuseEndpoint(arguments, text,
                       QStringLiteral("host and port. An IPv6 address stands in brackets: [::1]:4711"));
    const auto port = portIn(parts.port, smallestPort);
    if (!port)
        arguments.refuse(QStringLiteral("The port in %1 is no number from %2 to %3.")
                             .arg(Quoted(text))
                             .arg(smallestPort)
                             .arg(largestPort));
    return {parts.host, *port};
}

QString textOfPeer(const QHostAddress& address, quint16 port)
{
    if (address.isNull())
        return QStringLiteral("unknown peer");
    bool isIpv4 = false;
    const quint32 ipv4 = address.toIPv4Address(&isIpv4);
    return Endpoint{isIpv4 ? QHostAddress(ipv4).toString() : address.toString(), port}.toText();
}

} // namespace

QString Endpoint::toText() const
{
    const QString name = host.contains(QLatin1Char(':')) ? QStringLiteral("[%1]").arg(host) : host;
    return QStringLiteral("%1:%2").arg(name).arg(port);
}

OptionTable serverArgument()
{
    return required(argument("HOST:PORT", "HOST:PORT",
                             "The program to connect to, such as localhost:4711 or [::1]:4711."));
}

OptionTable listenArgument(const QString& name)
{
    return required(argument(name, name,
                             "The port to listen on. Without HOST, or with 127.0.0.1, only programs on this "
                             "machine can connect, with 0.0.0.0 all can. The port 0 is any free one; the "
                             "program says which."));
}

Endpoint serverOf(const Arguments& arguments)
{
    const QString text = arguments.text("HOST:PORT");
    const Parts parts(text);
    if (parts.host.isEmpty())
        refuseEndpoint(arguments, text, QStringLiteral("host and port, such as localhost:4711"));
    return endpointIn(arguments, text, parts, 1);
}

Endpoint listenOf(const Arguments& arguments, const char* name)
{
    const QString text = arguments.text(name);
    const Parts parts(text);
    if (parts.hasColon && parts.host.isEmpty())
        refuseEndpoint(arguments, text, QStringLiteral("port, and no host and port such as 0.0.0.0:4711"));
    Endpoint endpoint = endpointIn(arguments, text, parts, 0);
    if (endpoint.host.isEmpty())
        endpoint.host = QStringLiteral("127.0.0.1");
    return endpoint;
}

QString peerOf(const QTcpSocket& socket) { return textOfPeer(socket.peerAddress(), socket.peerPort()); }

QString peerOfDescriptor(int descriptor)
{
    union
    {
        sockaddr any;
        sockaddr_in ipv4;
        sockaddr_in6 ipv6;
        sockaddr_storage storage;
    } peer = {};
    socklen_t size = sizeof peer;
    if (getpeername(descriptor, &peer.any, &size) != 0)
        return textOfPeer(QHostAddress(), 0);
    return textOfPeer(QHostAddress(&peer.any),
                      ntohs(peer.any.sa_family == AF_INET6 ? peer.ipv6.sin6_port : peer.ipv4.sin_port));
}

} // namespace routermsg
