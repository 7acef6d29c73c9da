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

std::vector<PlayedItem> playedItems(const QString& path)
{
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
            if (isSentByClient(exchange.direction))
                items.push_back(itemOf(exchange, message->name));
        } catch (const DocumentError& error) {
            throw Refusal(message->findingOf(error));
        }
    }
    return items;
}

} // namespace routermsg
