// SPDX-License-Identifier: MIT
#include "simulator/ClientConnection.h"

#include "documents/Document.h"
#include "documents/DocumentError.h"

#include <QtNetwork/QHostAddress>

#include <utility>

namespace ROUTERSIM {

using MODELKIT::Failure;
using ROUTERDOCUMENTS::Form;
using ROUTERLINK::MessageReader;

namespace {

// Then other clients have their turn, and what they are told of these messages is sent.
constexpr int mostMessagesAtOnce = 8;
constexpr qint64 blockSize = 1 << 16;

MODELKIT::Limits limitsOfMessages(const ServerLimits& limits)
{
    MODELKIT::Limits result = MODELKIT::Limits::Get();
    result.inputSize = limits.messageSize;
    result.inflatedSize = limits.messageSize;
    result.listItems = limits.fragments;
    return result;
}

} // namespace

QString nameOf(const QHostAddress& address, quint16 port)
{
    const QString host = address.toString();
    return (host.contains(QLatin1Char(':')) ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2"))
        .arg(host)
        .arg(port);
}

QByteArray encoded(const ClientConnection::Document& document, Form form)
{
    ClientConnection::Document written(document);
    if (form != Form::Xml)
        return ROUTERDOCUMENTS::WriteDocument(written, form);
    const QByteArray bytes = written.GetXmlBytes(MODELKIT::XmlLayout::Compact);
    const Failure failure = MODELKIT::IMKObject::GetLastFailure();
    if (failure.kind != Failure::None)
        throw ROUTERDOCUMENTS::DocumentError(failure);
    return bytes.endsWith('\n') ? bytes : bytes + '\n';
}

ClientConnection::ClientConnection(QTcpSocket& socket, const ServerLimits& limits, QObject* parent)
    : QObject(parent), m_socket(socket), m_peer(nameOf(socket.peerAddress(), socket.peerPort())),
      m_queueSize(limits.queueSize), m_reader(limitsOfMessages(limits)), m_reading(*this, [this] { read(); }),
      m_failing(*this, [this] {
          Close({Failure::InputOutput, m_problem, {}});
      })
{
    m_socket.setParent(this);
    // The system notices clients that are gone without a word.
    m_socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket.setReadBufferSize(blockSize);
}

void ClientConnection::Begin(const Receiver& receiver)
{
    m_receiver = receiver;
    connect(&m_socket, &QTcpSocket::readyRead, this, &ClientConnection::readLater);
    connect(&m_socket, &QTcpSocket::disconnected, this, [this] {
        m_isEnding = true;
        readLater();
    });
    m_isEnding = m_socket.state() != QAbstractSocket::ConnectedState;
    readLater();
}

// --- receiving --------------------------------------------------------------------------------

void ClientConnection::Resume()
{
    if (std::exchange(m_isPaused, false))
        readLater();
}

void ClientConnection::read()
{
    for (int i = 0; i < mostMessagesAtOnce; ++i)
        if (m_isClosed || !readNext())
            return;
    readLater();
}

bool ClientConnection::readNext()
{
    // Nobody waits for the answers of a client that is gone.
    if (m_isFailing || (m_isPaused && !m_isEnding))
        return false;
    Document document;
    document.SetValidate(true);
    switch (m_reader.Next(document)) {
    case MessageReader::NeedMore:
        return takeBytes();
    case MessageReader::Ready:
        m_form = m_reader.GetForm();
        m_receiver.message(document, m_form);
        return true;
    case MessageReader::Refused:
        m_receiver.refused(Failure(m_reader.GetFailure()), m_reader.GetForm(), m_reader.GetBytes());
        return true;
    case MessageReader::Broken: {
        const Failure failure = m_reader.GetFailure();
        if (const QByteArray bytes = m_reader.GetUnreadBytes(); !bytes.isEmpty())
            m_receiver.refused(failure, std::nullopt, bytes);
        Close(failure);
        return false;
    }
    case MessageReader::Ended:
        Close({});
        return false;
    }
    return false;
}

bool ClientConnection::takeBytes()
{
    const QByteArray bytes = m_socket.read(blockSize);
    if (!bytes.isEmpty()) {
        m_reader.AddData(bytes);
        return true;
    }
    if (!m_isEnding)
        return false;
    end();
    return !m_isClosed;
}

void ClientConnection::end()
{
    const QAbstractSocket::SocketError error = m_socket.error();
    if (error != QAbstractSocket::UnknownSocketError && error != QAbstractSocket::RemoteHostClosedError)
        return Close({Failure::InputOutput, m_socket.errorString(), {}});
    m_reader.EndData();
}

// --- sending ----------------------------------------------------------------------------------

bool ClientConnection::Write(const QByteArray& bytes)
{
    if (m_isClosed || m_isEnding || m_isFailing)
        return false;
    QString problem;
    if (bytes.size() > m_queueSize - m_socket.bytesToWrite())
        m_socket.flush();
    const qint64 waiting = m_socket.bytesToWrite();
    if (bytes.size() > m_queueSize)
        problem = QStringLiteral("A message of %1 bytes does not fit into the queue of %2 bytes.")
                      .arg(bytes.size())
                      .arg(m_queueSize);
    else if (bytes.size() > m_queueSize - waiting)
        problem = QStringLiteral("The client reads too slowly: %1 of %2 bytes wait, and %3 more do not fit.")
                      .arg(waiting)
                      .arg(m_queueSize)
                      .arg(bytes.size());
    else if (m_socket.write(bytes) != bytes.size())
        problem = m_socket.errorString();
    if (problem.isEmpty()) {
        // A socket that learns that its client has ended sends nothing any more. And it would pass on only a
        // little in each turn.
        m_socket.flush();
        return true;
    }
    Fail(problem);
    return false;
}

void ClientConnection::Fail(const QString& problem)
{
    m_isFailing = true;
    m_problem = problem;
    m_failing.Schedule();
}

void ClientConnection::Close(const Failure& failure)
{
    if (std::exchange(m_isClosed, true))
        return;
    m_socket.disconnect(this);
    if (m_socket.state() == QAbstractSocket::ConnectedState)
        m_socket.flush();
    const qint64 unsent = m_socket.bytesToWrite();
    m_socket.abort();
    Failure told = failure;
    if (told.kind == Failure::None && unsent > 0)
        told = {Failure::InputOutput, QStringLiteral("%1 bytes were not sent.").arg(unsent), {}};
    m_receiver.closed(told, m_isEnding);
}

} // namespace ROUTERSIM
