// SPDX-License-Identifier: MIT
// What the tests of the simulator share: scenarios, fragments, a clock that the test turns, and clients.
#pragma once

#include "EventLoop.h"
#include "TestSupport.h"

#include "documents/Document.h"
#include "documents/Exchange.h"
#include "documents/JsonForm.h"
#include "link/MessageReader.h"
#include "simulator/Clock.h"
#include "simulator/SimulatorServer.h"

#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtNetwork/QTcpSocket>

#include <algorithm>
#include <memory>
#include <vector>

namespace simulator_support {

using namespace ROUTERSIM;
using namespace testing_support;
using ROUTERDOCUMENTS::Form;

inline Scenario scenario(const char* json) { return ReadScenario(json, text("test")); }

// A fragment, given as a JSON object with its payload.
inline Fragment fragment(const QByteArray& json)
{
    const auto document = ROUTERDOCUMENTS::FromJson("{\"Fragment\":" + json + '}');
    return dynamic_cast<const Fragment&>(*document);
}

// Fragments as that JSON, one behind another.
inline QString said(const QVector<Fragment>& fragments)
{
    QStringList all;
    for (const Fragment& each : fragments) {
        const QByteArray json = ROUTERDOCUMENTS::ToJsonLine(each).trimmed();
        all += QString::fromUtf8(json.mid(int(qstrlen("{\"Fragment\":")), json.size() - 1)).chopped(1);
    }
    return all.join(QLatin1Char(' ')).remove(QLatin1Char('"'));
}

// "Reply 7 {AcquireMastership:{Success:true}}".
inline QString said(const PelLu300RouterInterfaceXml& document)
{
    const PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    QString line = message.GetTypeAsString();
    if (message.IsMessageIDSet())
        line += QStringLiteral(" %1").arg(message.GetMessageID());
    return message.GetFragment().isEmpty() ? line : line + QLatin1Char(' ') + said(message.GetFragment());
}

// Its time goes on only when the test says so.
class TestClock : public Clock
{
public:
    void CallAfter(qint64 milliseconds, QObject& context, const std::function<void()>& action) override
    {
        m_waiting.push_back({m_now + milliseconds, &context, action});
    }

    // What is due happens in its order, and what follows from it.
    void advance(qint64 milliseconds)
    {
        const qint64 end = m_now + milliseconds;
        while (true) {
            const auto next = std::min_element(
                m_waiting.begin(), m_waiting.end(),
                [](const Waiting& left, const Waiting& right) { return left.time < right.time; });
            if (next == m_waiting.end() || next->time > end)
                break;
            const Waiting due = *next;
            m_waiting.erase(next);
            m_now = due.time;
            if (due.context)
                due.action();
        }
        m_now = end;
    }

    size_t countWaiting() const { return m_waiting.size(); }

private:
    struct Waiting
    {
        qint64 time;
        QPointer<QObject> context;
        std::function<void()> action;
    };

    qint64 m_now = 0;
    std::vector<Waiting> m_waiting;
};

// A client that keeps what it is told as lines.
class TestClient
{
public:
    explicit TestClient(quint16 port)
    {
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        waitUntil([this] { return socket.state() == QAbstractSocket::ConnectedState; });
        QObject::connect(&socket, &QTcpSocket::readyRead, &socket, [this] { take(); });
        QObject::connect(&socket, &QTcpSocket::disconnected, &socket, [this] { isGone = true; });
    }

    QString peer() const { return nameOf(socket.localAddress(), socket.localPort()); }

    void write(const QByteArray& bytes)
    {
        ASSERT_EQ(socket.write(bytes), bytes.size());
        socket.flush();
    }

    // Asks with a fragment in JSON; none when it is empty.
    void ask(unsigned int number, const QByteArray& json = {}, Form form = Form::Binary)
    {
        PelLu300RouterInterfaceXml document;
        PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
        message.SetType(PelLu300RouterMessage::Request);
        message.SetMessageID(number);
        if (!json.isEmpty())
            message.AppendFragment(fragment(json));
        write(ROUTERDOCUMENTS::WriteDocument(document, form));
    }

    // What has come since the last call, when there are as many messages.
    QStringList heard(int count)
    {
        waitUntil([&] { return lines.size() >= count || isGone; });
        settle();
        QStringList result;
        result.swap(lines);
        return result;
    }

    void awaitEnd()
    {
        waitUntil([this] { return isGone; });
    }

    QTcpSocket socket;
    QStringList lines;
    // The forms in which they have come.
    std::vector<Form> forms;
    // All that has come.
    QByteArray arrived;
    // Why the rest cannot be read.
    QString broken;
    bool isGone = false;

private:
    void take()
    {
        const QByteArray bytes = socket.readAll();
        arrived += bytes;
        m_reader.AddData(bytes);
        PelLu300RouterInterfaceXml document;
        document.SetValidate(true);
        using ROUTERLINK::MessageReader;
        while (true) {
            switch (m_reader.Next(document)) {
            case MessageReader::Ready:
                lines += said(document);
                forms.push_back(m_reader.GetForm());
                break;
            case MessageReader::Broken:
                broken = m_reader.GetFailure().text;
                return;
            case MessageReader::Refused:
                lines += QStringLiteral("refused");
                break;
            default:
                return;
            }
        }
    }

    ROUTERLINK::MessageReader m_reader;
};

// A simulator with clients, in one event loop.
class Simulation
{
public:
    explicit Simulation(const char* json = "{}", quint64 seed = 1)
        : server(scenario(json), seed, clock,
                 [this](const ROUTERDOCUMENTS::Exchange& exchange) { exchanges.push_back(exchange); })
    {
        EXPECT_TRUE(server.Listen(QHostAddress(QHostAddress::LocalHost), 0));
    }

    // A client that the simulator knows.
    std::unique_ptr<TestClient> connectClient()
    {
        const size_t before = exchanges.size();
        auto client = std::make_unique<TestClient>(server.GetPort());
        waitUntil([&] { return exchanges.size() > before; });
        return client;
    }

    // The events in the log: "closed: The connection was cut, as the scenario says."
    QStringList logged(ROUTERDOCUMENTS::ConnectionEvent event) const
    {
        QStringList result;
        for (const ROUTERDOCUMENTS::Exchange& exchange : exchanges)
            if (exchange.event == event)
                result += exchange.fault;
        return result;
    }
    QStringList ends() const { return logged(ROUTERDOCUMENTS::ConnectionEvent::Closed); }

    TestClock clock;
    std::vector<ROUTERDOCUMENTS::Exchange> exchanges;
    SimulatorServer server;
};

} // namespace simulator_support
