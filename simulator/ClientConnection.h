// SPDX-License-Identifier: MIT
// The connection to one client: messages in, bytes out.
#pragma once

#include "simulator/Scenario.h"

#include "documents/Forms.h"
#include "link/Later.h"
#include "link/MessageReader.h"

#include "modelkit/Failure.h"
#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtNetwork/QTcpSocket>

#include <functional>
#include <optional>

namespace ROUTERSIM {

// It reads with MessageReader and writes bytes, because it must do what a MessageChannel never does: write
// half a message, answer in another form than that of the last message, log what could not be read, and stop
// reading while too many requests wait.
class ClientConnection : public QObject
{
public:
    using Document = PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;

    // Whoever is called may close the connection, but not delete it.
    struct Receiver
    {
        std::function<void(const Document&, ROUTERDOCUMENTS::Form)> message;
        // Bytes that could not be read. Without a form, nobody can tell what follows, and the connection
        // ends.
        std::function<void(const MODELKIT::Failure&, std::optional<ROUTERDOCUMENTS::Form>, const QByteArray&)>
            refused;
        // Called once, and never inside of Write(). With Failure::None when it was ended between two
        // messages.
        std::function<void(const MODELKIT::Failure&, bool isByClient)> closed;
    };

    // The socket becomes a child.
    ClientConnection(QTcpSocket& socket, const ServerLimits& limits, QObject* parent);

    // Reads from now on.
    void Begin(const Receiver& receiver);

    // The other end: "127.0.0.1:4711", "[::1]:4711".
    const QString& GetPeer() const { return m_peer; }
    // The form in which the client has written last; binary at first.
    ROUTERDOCUMENTS::Form GetForm() const { return m_form; }
    bool IsClosed() const { return m_isClosed; }

    // False when the connection is closed, or is being closed because too much waits to be sent.
    bool Write(const QByteArray& bytes);
    // Closes it with that failure as soon as the event loop runs. Until then nothing is read or written.
    void Fail(const QString& problem);
    // Ends the connection. What has been written is sent, as far as the system takes it at once.
    void Close(const MODELKIT::Failure& failure);

    // No request is read while it is paused.
    void Pause() { m_isPaused = true; }
    void Resume();

private:
    void read();
    void readLater() { m_reading.Schedule(); }
    // False when there is nothing more to read now.
    bool readNext();
    bool takeBytes();
    void end();

    QTcpSocket& m_socket;
    const QString m_peer;
    const qint64 m_queueSize;
    ROUTERLINK::MessageReader m_reader;
    Receiver m_receiver;
    ROUTERDOCUMENTS::Form m_form = ROUTERDOCUMENTS::Form::Binary;
    ROUTERLINK::Later m_reading;
    ROUTERLINK::Later m_failing;
    QString m_problem;
    bool m_isPaused = false;
    // Whether the client has ended the connection.
    bool m_isEnding = false;
    // Whether this end is going to close it.
    bool m_isFailing = false;
    bool m_isClosed = false;
};

// The message in that form, as this library writes it on connections.
// Throws a DocumentError when the form cannot represent it.
QByteArray encoded(const ClientConnection::Document& document, ROUTERDOCUMENTS::Form form);

// "127.0.0.1:4711", "[::1]:4711".
QString nameOf(const QHostAddress& address, quint16 port);

} // namespace ROUTERSIM
