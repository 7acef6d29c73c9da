// SPDX-License-Identifier: MIT
#include "wire/Watcher.h"

#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QIODevice>

#include <memory>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;
using ROUTERLINK::MessageReader;

Exchange exchangeNow(Direction direction, const QString& peer)
{
    Exchange exchange;
    exchange.direction = direction;
    exchange.peer = peer;
    return exchange;
}

Exchange eventNow(ConnectionEvent event, Direction direction, const QString& peer, const QString& fault)
{
    Exchange exchange = exchangeNow(direction, peer);
    exchange.event = event;
    exchange.fault = fault;
    return exchange;
}

void Watcher::add(const QByteArray& bytes)
{
    if (m_isBroken)
        return tellFault(QStringLiteral("This follows what could not be understood."), bytes);
    m_reader.AddData(bytes);
    readOn();
}

void Watcher::addArrived(QIODevice& device)
{
    while (device.bytesAvailable() > 0) {
        const QByteArray bytes = device.read(mostUnread);
        if (bytes.isEmpty())
            return;
        add(bytes);
    }
}

void Watcher::end()
{
    if (m_isBroken)
        return;
    m_reader.EndData();
    readOn();
}

void Watcher::readOn()
{
    while (true) {
        const auto document = std::make_shared<PelLu300RouterInterfaceXml>();
        switch (m_reader.Next(*document)) {
        case MessageReader::NeedMore:
        case MessageReader::Ended:
            return;
        case MessageReader::Ready: {
            Exchange exchange = exchangeNow(m_direction, m_peer);
            exchange.form = m_reader.GetForm();
            exchange.record = document;
            m_receiver(exchange);
            break;
        }
        case MessageReader::Refused: {
            Exchange exchange = exchangeNow(m_direction, m_peer);
            exchange.form = m_reader.GetForm();
            exchange.fault = m_reader.GetFailure().GetSentence();
            exchange.bytes = m_reader.GetBytes();
            m_receiver(exchange);
            break;
        }
        case MessageReader::Broken:
            m_isBroken = true;
            tellFault(m_reader.GetFailure().GetSentence(), m_reader.GetUnreadBytes());
            return;
        }
    }
}

void Watcher::tellFault(const QString& text, const QByteArray& bytes)
{
    Exchange exchange = exchangeNow(m_direction, m_peer);
    exchange.fault = text;
    exchange.bytes = bytes;
    m_receiver(exchange);
}

} // namespace routermsg
