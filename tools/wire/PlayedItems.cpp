// SPDX-License-Identifier: MIT
#include "wire/PlayedItems.h"

#include "Messages.h"
#include "Saving.h"
#include "documents/DocumentError.h"

#include <memory>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

bool isSentByClient(Direction direction)
{
    return direction == Direction::Sent || direction == Direction::ToServer;
}

bool isOnWire(Form form) { return form == Form::Xml || IsBinary(form); }

// As a channel writes them.
QByteArray bytesOf(MODELKIT::IMKObject& record, Form form, const QString& name)
{
    const QByteArray bytes = encode(record, form, name);
    return form == Form::Xml ? record.GetXmlBytes(MODELKIT::XmlLayout::Compact) + '\n' : bytes;
}

Finding nothingToSend(const QString& path, Played played)
{
    const bool isSent = played == Played::Sent;
    Finding finding = Finding::ofFile(
        path, QStringLiteral("Nothing here is to be sent: the direction of all exchanges is %1.")
                  .arg(isSent ? QStringLiteral("received or toClient") : QStringLiteral("sent or toServer")));
    finding.hint = QStringLiteral("The option --direction %1 sends them.")
                       .arg(isSent ? QStringLiteral("received") : QStringLiteral("sent"));
    return finding;
}

PlayedItem itemOf(const Exchange& exchange, const QString& name)
{
    PlayedItem item;
    item.exchange = exchange;
    item.isTimed = true;
    item.bytes = exchange.bytes;
    if (!exchange.record)
        return item;
    if (!isOnWire(*exchange.form))
        item.exchange.form = Form::Binary;
    item.bytes = bytesOf(*item.exchange.record, *item.exchange.form, name);
    return item;
}

PlayedItem itemOf(const InputMessage& message)
{
    Document document = message.read();
    PlayedItem item;
    item.exchange.form = isOnWire(document.form) ? document.form : Form::Binary;
    item.exchange.record = std::move(document.record);
    const RecordedMessage& recorded = message.recorded;
    item.bytes = isOnWire(document.form) ? recorded.bytes + LineBreakBehind(recorded)
                                         : encode(*item.exchange.record, Form::Binary, message.name);
    return item;
}

} // namespace

std::vector<PlayedItem> playedItems(const QString& path, Played played)
{
    bool isAnyLeft = false;
    std::vector<PlayedItem> items;
    Messages input(path);
    while (const auto message = input.next()) {
        const QByteArray& bytes = message->recorded.bytes;
        const bool isJson = message->recorded.form == Form::Json || message->recorded.form == Form::JsonLines;
        if (!isJson || !IsExchange(bytes)) {
            items.push_back(itemOf(*message));
            continue;
        }
        try {
            const Exchange exchange = ReadExchange(bytes);
            if (exchange.event)
                continue;
            if (isSentByClient(exchange.direction) != (played == Played::Sent))
                isAnyLeft = true;
            else
                items.push_back(itemOf(exchange, message->name));
        } catch (const DocumentError& error) {
            throw Refusal(message->findingOf(error));
        }
    }
    if (items.empty() && isAnyLeft)
        throw Refusal(nothingToSend(path, played));
    return items;
}

} // namespace routermsg
