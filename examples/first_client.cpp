// SPDX-License-Identifier: MIT
// Tunes a router and prints its reply. README.md shows this program.
//
//     first_client [PORT]

//! [the first client]
#include "link/MessageChannel.h"

#include <QtCore/QCoreApplication>
#include <QtNetwork/QTcpSocket>

#include <iostream>

using namespace ROUTERLINK;

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QTcpSocket socket;
    socket.connectToHost("localhost", argc > 1 ? QString(argv[1]).toUShort() : 4711);
    MessageChannel channel(socket);
    MessageChannel::Document tuning;
    tuning.GetPelLu300RouterMessage().AddFragment().GetDF_Params().SetFrequency(98.5e6);
    QObject::connect(channel.Request(tuning, std::chrono::seconds(5)), &PendingRequest::Finished,
                     [](RequestResult result) {
                         const bool isReplied = result.outcome == RequestResult::Replied;
                         std::cout << qPrintable(isReplied ? result.reply.GetXmlString()
                                                           : result.failure.GetSentence() + '\n');
                         QCoreApplication::exit(isReplied ? 0 : 1);
                     });
    return application.exec();
}
//! [the first client]
