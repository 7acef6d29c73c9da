// SPDX-License-Identifier: MIT
#include "documents/ExchangeKeys.h"

#include "documents/DocumentError.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

namespace ROUTERDOCUMENTS {

using MODELKIT::Failure;

namespace {

const QStringList& keysOfExchanges()
{
    static const QStringList keys = {QStringLiteral("time"),   QStringLiteral("direction"),
                                     QStringLiteral("peer"),   QStringLiteral("form"),
                                     ExchangeKeys::document(), QStringLiteral("fault"),
                                     QStringLiteral("bytes"),  QStringLiteral("event")};
    return keys;
}

QStringList namesOfDirections()
{
    return {NameOf(Direction::Received), NameOf(Direction::Sent), NameOf(Direction::ToServer),
            NameOf(Direction::ToClient)};
}

QStringList namesOfEvents() { return {NameOf(ConnectionEvent::Connected), NameOf(ConnectionEvent::Closed)}; }

} // namespace

bool ExchangeKeys::isKey(const QString& name) { return keysOfExchanges().contains(name); }

ExchangeKeys::ExchangeKeys(JsonText& text, const JsonPath& path) : m_text(text), m_path(path)
{
    const JsonText::Type type = m_text.NextType();
    m_begin = m_text.PlaceOf(m_text.Offset());
    if (type != JsonText::Object)
        refuseWhole(QStringLiteral("The value is %1, expected is an exchange.").arg(nameOf(type)));
    m_text.Enter();
}

bool ExchangeKeys::take(const QString& key)
{
    if (m_seen.contains(key))
        refuse(key, QStringLiteral("The key %1 comes twice in its object.").arg(Quoted(key)),
               Failure::NotWellFormed);
    m_seen += key;
    if (key == document())
        return false;
    if (key == QLatin1String("time"))
        takeTime(key);
    else if (key == QLatin1String("direction"))
        m_exchange.direction = static_cast<Direction>(takeName(key, namesOfDirections()));
    else if (key == QLatin1String("peer"))
        m_exchange.peer = takeText(key);
    else if (key == QLatin1String("form"))
        m_exchange.form = static_cast<Form>(takeName(key, FormNames()));
    else if (key == QLatin1String("fault")) {
        m_exchange.fault = takeText(key);
        m_faultPlace = m_text.PlaceOf(m_text.Offset());
    } else if (key == QLatin1String("bytes"))
        takeBytes(key);
    else if (key == QLatin1String("event"))
        m_exchange.event = static_cast<ConnectionEvent>(takeName(key, namesOfEvents()));
    else
        refuse(key, QStringLiteral("An exchange has no key %1.%2")
                        .arg(Quoted(Abbreviated(key)), DidYouMean(key, keysOfExchanges())));
    return true;
}

Exchange ExchangeKeys::end() const
{
    for (const char* key : {"time", "direction", "peer"})
        if (!has(key))
            refuseWhole(QStringLiteral("The exchange lacks the key %1.").arg(Quoted(QLatin1String(key))));
    const int kinds = int(m_seen.contains(document())) + int(has("event")) + int(has("bytes"));
    if (kinds > 1 || (has("fault") && m_seen.contains(document())))
        refuseWhole(QStringLiteral("The exchange is more than one of a message, faulty bytes and an event."));
    if (kinds == 0 && has("fault"))
        refuseWhole(QStringLiteral("The exchange has a fault, but neither bytes nor an event."));
    if (kinds == 0)
        refuseWhole(QStringLiteral("The exchange has no message, no faulty bytes and no event."));
    if (has("bytes") && !has("fault"))
        refuseWhole(QStringLiteral("The exchange has bytes, but does not say what is wrong with them."));
    if (m_seen.contains(document()) && !has("form"))
        refuseWhole(QStringLiteral("The exchange has a message, but does not tell its form."));
    return m_exchange;
}

void ExchangeKeys::requireDocument() const
{
    const Exchange exchange = end();
    if (exchange.event)
        refuseWhole(QStringLiteral("Here is an event of a connection, and no message."));
    if (!has("fault"))
        return;
    MODELKIT::Place place = m_faultPlace;
    place.path = JsonPath(m_path, QStringLiteral("fault")).toText();
    throw DocumentError({Failure::Refused, exchange.fault, place});
}

void ExchangeKeys::takeTime(const QString& key)
{
    const QString text = takeText(key);
    const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid() || time.timeSpec() != Qt::UTC)
        refuse(key, QStringLiteral("%1 is no time like \"2024-05-17T08:30:00.250Z\".")
                        .arg(Quoted(Abbreviated(text))));
    m_exchange.time = time;
}

void ExchangeKeys::takeBytes(const QString& key)
{
    const auto decoded =
        QByteArray::fromBase64Encoding(takeText(key).toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        refuse(key, QStringLiteral("These bytes are not in base64."));
    m_exchange.bytes = *decoded;
}

QString ExchangeKeys::takeText(const QString& key)
{
    const JsonText::Type type = m_text.NextType();
    if (type != JsonText::String)
        refuse(
            key,
            QStringLiteral("The value is %1, expected is %2.").arg(nameOf(type), nameOf(JsonText::String)));
    return m_text.TakeString();
}

int ExchangeKeys::takeName(const QString& key, const QStringList& names)
{
    const QString name = takeText(key);
    const auto index = names.indexOf(name);
    if (index < 0)
        refuse(key, QStringLiteral("%1 is none of %2.%3")
                        .arg(Quoted(Abbreviated(name)), Listed(names), DidYouMean(name, names)));
    return static_cast<int>(index);
}

void ExchangeKeys::refuse(const QString& key, const QString& text, Failure::Kind kind) const
{
    MODELKIT::Place place = m_text.PlaceOf(m_text.Offset());
    place.path = JsonPath(m_path, key).toText();
    throw DocumentError({kind, text, place});
}

void ExchangeKeys::refuseWhole(const QString& text) const
{
    MODELKIT::Place place = m_begin;
    place.path = m_path.toText();
    throw DocumentError({Failure::Refused, text, place});
}

bool isEvent(const QByteArray& json)
{
    if (!IsExchange(json))
        return false;
    try {
        JsonText text(json);
        const JsonPath path;
        ExchangeKeys keys(text, path);
        for (QString key; text.NextKey(key);)
            if (!keys.take(key))
                return false;
        return keys.end().event.has_value();
    } catch (const DocumentError&) {
        // Its reader tells what is wrong.
        return false;
    }
}

} // namespace ROUTERDOCUMENTS
