// SPDX-License-Identifier: MIT
// Answers clients that ask whether they may be master: yes to the first one, until its connection ends.
//
//     link_server [binary | xml] [PORT]
//
// Without a form, each client is answered in its own. Without a port, any free one is taken.

#include "link/MessageChannel.h"

#include <QtCore/QCoreApplication>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <iostream>

using namespace ROUTERLINK;
using namespace PELLU300ROUTERINTERFACEXML;

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QStringList words = application.arguments().mid(1);
    ChannelOptions options;
    options.validation = ROUTERDOCUMENTS::Validation::On;
    if (words.value(0) == "binary" || words.value(0) == "xml")
        options.form =
            words.takeFirst() == "xml" ? ROUTERDOCUMENTS::Form::Xml : ROUTERDOCUMENTS::Form::Binary;
    QTcpServer server;
    bool isPort = true;
    const quint16 port = words.value(0, "0").toUShort(&isPort);
    if (!isPort || !server.listen(QHostAddress::LocalHost, port)) {
        std::cerr << "Cannot listen on this port. " << server.errorString().toStdString() << std::endl;
        return 1;
    }
    std::cout << "listening on port " << server.serverPort() << std::endl;

    const MessageChannel* master = nullptr;
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        QTcpSocket* const socket = server.nextPendingConnection();
        auto* const channel = new MessageChannel(*socket, options, socket);
        QObject::connect(channel, &MessageChannel::MessageReceived, [&, channel](const auto& request) {
            PelLu300RouterInterfaceXml reply(request);
            PelLu300RouterMessage& message = reply.GetPelLu300RouterMessage();
            message.SetType(PelLu300RouterMessage::Reply);
            for (Fragment& fragment : message.GetFragment()) {
                master = master ? master : channel;
                fragment.GetAcquireMastership().SetSuccess(master == channel);
            }
            if (!channel->Send(reply))
                std::cerr << channel->GetSendFailure().GetSentence().toStdString() << std::endl;
        });
        QObject::connect(channel, &MessageChannel::Closed, [&, channel, socket](const auto& failure) {
            if (failure.kind != MODELKIT::Failure::None)
                std::cerr << failure.GetSentence().toStdString() << std::endl;
            master = master == channel ? nullptr : master;
            socket->deleteLater();
        });
    });
    return application.exec();
}
