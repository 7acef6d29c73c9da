// SPDX-License-Identifier: MIT
#include "wire/Watcher.h"

#include "modelkit/ReadingReport.h"
#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QIODevice>

#include <algorithm>
#include <memory>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using MODELKIT::Failure;
using MODELKIT::ReadingReport;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;
using ROUTERLINK::MessageReader;

namespace {

// Whether the record holds another value than stands in the message.
bool isWrongValue(const ReadingReport::Entry& entry)
{
    switch (entry.kind) {
    case ReadingReport::NotANumber:
    case ReadingReport::WrappedNumber:
    case ReadingReport::UnusualBoolean:
    case ReadingReport::UnknownName:
        return true;
    default:
        return false;
    }
}

// A sentence about the first wrong value; null without one.
QString wrongValueIn(const ReadingReport& report)
{
    const auto& entries = report.GetEntries();
    const auto found = std::find_if(entries.begin(), entries.end(), isWrongValue);
    return found == entries.end() ? QString()
                                  : Failure{Failure::Refused, found->text, found->place}.GetSentence();
}

} // namespace

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
        // A wrong value would be lost: the record holds another one or none.
        document->SetValidate(true);
        const ReadingReport report;
        switch (m_reader.Next(*document)) {
        case MessageReader::NeedMore:
        case MessageReader::Ended:
            return;
        case MessageReader::Ready: {
            const QString fault = wrongValueIn(report);
            if (!fault.isNull()) {
                tellRefused(fault);
                break;
            }
            Exchange exchange = exchangeNow(m_direction, m_peer);
            exchange.form = m_reader.GetForm();
            exchange.record = document;
            m_receiver(exchange);
            break;
        }
        case MessageReader::Refused:
            tellRefused(m_reader.GetFailure().GetSentence());
            break;
        case MessageReader::Broken:
            m_isBroken = true;
            tellFault(m_reader.GetFailure().GetSentence(), m_reader.GetUnreadBytes());
            return;
        }
    }
}

void Watcher::tellRefused(const QString& text)
{
    Exchange exchange = exchangeNow(m_direction, m_peer);
    exchange.form = m_reader.GetForm();
    exchange.fault = text;
    exchange.bytes = m_reader.GetBytes();
    m_receiver(exchange);
}

void Watcher::tellFault(const QString& text, const QByteArray& bytes)
{
    Exchange exchange = exchangeNow(m_direction, m_peer);
    exchange.fault = text;
    exchange.bytes = bytes;
    m_receiver(exchange);
}

} // namespace routermsg
