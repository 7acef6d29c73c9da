// SPDX-License-Identifier: MIT
// Asks a server whether this client may be master, and prints its answer.
//
//     link_client PORT [binary | xml]

#include "link/MessageChannel.h"

#include <QtCore/QCoreApplication>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpSocket>

#include <iostream>

using namespace ROUTERLINK;
using namespace PELLU300ROUTERINTERFACEXML;
using ROUTERDOCUMENTS::Form;

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList words = application.arguments();
    const QString form = words.value(2, "binary");
    if (words.size() < 2 || (form != "binary" && form != "xml")) {
        std::cerr << "usage: link_client PORT [binary | xml]" << std::endl;
        return 2;
    }
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, words.value(1).toUShort());
    if (!socket.waitForConnected()) {
        std::cerr << "Cannot connect: " << socket.errorString().toStdString() << std::endl;
        return 1;
    }
    ChannelOptions options;
    options.form = form == "xml" ? Form::Xml : Form::Binary;
    options.validation = ROUTERDOCUMENTS::Validation::On;
    MessageChannel channel(socket, options);

    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    Fragment fragment;
    fragment.SetAcquireMastership(AcquireMastership());
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Request);
    document.GetPelLu300RouterMessage().AppendFragment(fragment);
    PendingRequest* const request = channel.Request(document, std::chrono::seconds(5));
    QObject::connect(request, &PendingRequest::Finished, [&](const RequestResult& result) {
        if (result.outcome != RequestResult::Replied) {
            std::cerr << result.failure.GetSentence().toStdString() << std::endl;
            return QCoreApplication::exit(1);
        }
        for (const Fragment& answer : result.reply.GetPelLu300RouterMessage().GetFragment())
            std::cout << "master: " << (answer.GetAcquireMastership().GetSuccess() ? "yes" : "no")
                      << ", said in " << NameOf(*channel.GetPeerForm()).toStdString() << std::endl;
        QCoreApplication::quit();
    });
    return application.exec();
}
