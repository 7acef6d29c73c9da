// SPDX-License-Identifier: MIT
// What the tests of channels share: replies and events, and what a channel and a request have told.
#pragma once

#include "LinkSupport.h"

#include "link/MessageChannel.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

namespace link_support {

inline PelLu300RouterInterfaceXml reply(unsigned int number)
{
    return numbered(number, PelLu300RouterMessage::Reply);
}

inline PelLu300RouterInterfaceXml event(unsigned int number)
{
    return numbered(number, PelLu300RouterMessage::Event);
}

// Writes down the signals of a channel, for example "received 7", "refused", "late 7" or "closed".
class Diary : public QObject
{
public:
    explicit Diary(MessageChannel& channel)
    {
        using Document = MessageChannel::Document;
        const auto note = [this](const QString& what) {
            return [this, what](const Document& document) {
                lines += QStringLiteral("%1 %2").arg(what).arg(numberOf(document));
            };
        };
        connect(&channel, &MessageChannel::MessageReceived, this, note("received"));
        connect(&channel, &MessageChannel::UnexpectedReply, this, note("unexpected"));
        connect(&channel, &MessageChannel::LateReply, this, note("late"));
        connect(&channel, &MessageChannel::MessageRefused, this, [this](const Failure& failure) {
            refusals += failure.text;
            lines += QStringLiteral("refused");
        });
        connect(&channel, &MessageChannel::Drained, this, [this] { ++drained; });
        connect(&channel, &MessageChannel::Closed, this, [this](const Failure& failure) {
            closing = failure;
            lines += failure.kind == Failure::None ? QStringLiteral("closed") : QStringLiteral("broken");
        });
    }

    bool isClosed() const { return lines.endsWith("closed") || lines.endsWith("broken"); }

    QStringList lines;
    QStringList refusals;
    int drained = 0;
    Failure closing;
};

// Keeps the result of a request.
class Result : public QObject
{
public:
    explicit Result(PendingRequest* request) : messageID(request->GetMessageID())
    {
        connect(request, &PendingRequest::Finished, this, [this](const RequestResult& given) {
            ++count;
            result = given;
        });
    }

    unsigned int messageID;
    int count = 0;
    RequestResult result;
};

} // namespace link_support
