// SPDX-License-Identifier: MIT
#include "SocketPair.h"

#include <QtCore/QCoreApplication>

#include <sys/socket.h>

namespace benchmarks {

namespace {

void makeApplication()
{
    static int count = 1;
    static char name[] = "benchmarks";
    static char* names[] = {name, nullptr};
    static const QCoreApplication application(count, names);
}

struct Connection
{
    explicit Connection(const MakeEnd& make)
    {
        makeApplication();
        int ends[2] = {-1, -1};
        require(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0);
        require(nearSocket.setSocketDescriptor(ends[0]));
        require(farSocket.setSocketDescriptor(ends[1]));
        near = make(nearSocket);
        far = make(farSocket);
    }

    template <class Condition>
    static void waitUntil(const Condition& isSo)
    {
        while (!isSo())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    QLocalSocket nearSocket;
    QLocalSocket farSocket;
    std::unique_ptr<Contact> near;
    std::unique_ptr<Contact> far;
};

} // namespace

Prepare streaming(const MakeEnd& make)
{
    return [=](int messages) {
        const auto connection = std::make_shared<Connection>(make);
        const auto received = std::make_shared<int>(0);
        connection->far->received = [received] { ++*received; };
        return [=] {
            *received = 0;
            for (int i = 0; i < messages; ++i)
                connection->near->send();
            Connection::waitUntil([&] { return *received == messages; });
            return std::shared_ptr<void>();
        };
    };
}

Prepare answering(const MakeEnd& make)
{
    return [=](int) {
        const auto connection = std::make_shared<Connection>(make);
        const auto isBack = std::make_shared<bool>(false);
        connection->far->received = [far = connection->far.get()] { far->send(); };
        connection->near->received = [isBack] { *isBack = true; };
        return [=] {
            *isBack = false;
            connection->near->send();
            Connection::waitUntil([&] { return *isBack; });
            return std::shared_ptr<void>();
        };
    };
}

} // namespace benchmarks
