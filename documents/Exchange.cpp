// SPDX-License-Identifier: MIT
#include "documents/Exchange.h"

#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/ExchangeKeys.h"
#include "documents/JsonForm.h"
#include "documents/JsonString.h"

#include "modelkit/Devices.h"

#include <stdexcept>

namespace ROUTERDOCUMENTS {

namespace {

// Writes the object of one line.
class ExchangeLine
{
public:
    void add(const char* key, const QString& text)
    {
        begin(key);
        appendJsonString(text, m_json);
    }

    void addJson(const char* key, const QByteArray& value)
    {
        begin(key);
        m_json += value;
    }

    QByteArray end() const { return m_json + "}\n"; }

private:
    void begin(const char* key)
    {
        m_json += m_json.isEmpty() ? "{\"" : ",\"";
        m_json += key;
        m_json += "\":";
    }

    QByteArray m_json;
};

void requireContent(const Exchange& exchange)
{
    if (exchange.record ? !exchange.form || exchange.event || !exchange.fault.isNull()
                        : !exchange.event && exchange.fault.isNull())
        throw std::logic_error("An exchange is a message with a form, faulty bytes, or an event.");
}

} // namespace

QString NameOf(Direction direction)
{
    switch (direction) {
    case Direction::Received:
        return QStringLiteral("received");
    case Direction::Sent:
        return QStringLiteral("sent");
    case Direction::ToServer:
        return QStringLiteral("toServer");
    case Direction::ToClient:
        break;
    }
    return QStringLiteral("toClient");
}

QString NameOf(ConnectionEvent event)
{
    return event == ConnectionEvent::Connected ? QStringLiteral("connected") : QStringLiteral("closed");
}

QByteArray ToExchangeLine(const Exchange& exchange)
{
    requireContent(exchange);
    ExchangeLine line;
    line.add("time", exchange.time.toUTC().toString(Qt::ISODateWithMs));
    line.add("direction", NameOf(exchange.direction));
    line.add("peer", exchange.peer);
    if (exchange.event)
        line.add("event", NameOf(*exchange.event));
    else if (exchange.form)
        line.add("form", NameOf(*exchange.form));
    if (!exchange.fault.isNull())
        line.add("fault", exchange.fault);
    if (exchange.record)
        line.addJson("document", ToJsonLine(*exchange.record).trimmed());
    else if (!exchange.event)
        line.add("bytes", QString::fromLatin1(exchange.bytes.toBase64()));
    return line.end();
}

void WriteExchange(QIODevice& device, const Exchange& exchange)
{
    const QByteArray line = ToExchangeLine(exchange);
    QString reason;
    if (!MODELKIT::writeAll(device, line, reason) || !MODELKIT::flush(device, reason))
        throw DocumentError(MODELKIT::cannotWrite(QStringLiteral("exchange"), reason));
}

bool IsExchange(const QByteArray& json)
{
    try {
        JsonText text(json);
        if (text.NextType() != JsonText::Object)
            return false;
        text.Enter();
        QString key;
        return text.NextKey(key) && ExchangeKeys::isKey(key);
    } catch (const DocumentError&) {
        return false;
    }
}

Exchange ReadExchange(const QByteArray& json, Validation validation)
{
    JsonText text(json);
    const JsonPath path;
    ExchangeKeys keys(text, path);
    bool hasDocument = false;
    for (QString key; text.NextKey(key);)
        if (!keys.take(key)) {
            hasDocument = true;
            text.Pass();
        }
    text.End();
    Exchange exchange = keys.end();
    if (hasDocument)
        exchange.record = ReadDocument(json, {Form::JsonLines, validation}).record;
    return exchange;
}

} // namespace ROUTERDOCUMENTS
