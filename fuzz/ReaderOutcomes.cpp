// SPDX-License-Identifier: MIT
#include "fuzz/ReaderOutcomes.h"

#include "fuzz/Requirements.h"

#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QBuffer>
#include <QtCore/QDataStream>

#include <algorithm>

namespace fuzzing {

using MODELKIT::Failure;
using ROUTERLINK::MessageReader;

namespace {

bool isMessage(MessageReader::Outcome outcome)
{
    return outcome == MessageReader::Ready || outcome == MessageReader::Refused;
}

QByteArray contentOf(const MODELKIT::IMKObject& document)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    document.GetBinaryRepresentation(stream);
    return content;
}

std::string seenText(const Outcome& outcome) { return outcome.failure.text.toStdString(); }

// The outcomes until more is needed. False after the last one.
bool takeAll(MessageReader& reader, QVector<Outcome>& outcomes)
{
    PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    while (true) {
        const auto outcome = reader.Next(document);
        const Failure& failure = reader.GetFailure();
        const bool hasFailed = outcome == MessageReader::Refused || outcome == MessageReader::Broken;
        require((failure.kind != Failure::None) == hasFailed, "a failure is told when there is one");
        require(failure.text.isEmpty() != hasFailed, "a failure has a text");
        require(failure.kind != Failure::Interrupted, "nothing has interrupted the reader");
        require(reader.GetBytes().isEmpty() != isMessage(outcome), "a message has bytes");
        if (outcome == MessageReader::NeedMore)
            return true;
        const bool isReady = outcome == MessageReader::Ready;
        outcomes.append({outcome, reader.GetForm(), reader.GetOffset(), failure, reader.GetBytes(),
                         isReady ? contentOf(document) : QByteArray()});
        if (!isMessage(outcome))
            return false;
    }
}

} // namespace

MODELKIT::Limits smallLimits()
{
    MODELKIT::Limits limits;
    limits.inputSize = 2000;
    limits.inflatedSize = 4000;
    limits.nestingDepth = 10;
    limits.attributes = 8;
    limits.listItems = 20;
    return limits;
}

QVector<Outcome> outcomesOf(const char* bytes, qint64 size, const NextPiece& nextPiece) noexcept
{
    MessageReader reader(smallLimits());
    QVector<Outcome> outcomes;
    bool goesOn = true;
    for (qint64 begin = 0; goesOn && begin < size;) {
        const qint64 piece = std::clamp<qint64>(nextPiece(size - begin), 1, size - begin);
        // A copy of its own, so that the address sanitizer sees when the reader looks behind it.
        const QByteArray copy(bytes + begin, static_cast<int>(piece));
        reader.AddData(copy);
        begin += piece;
        goesOn = takeAll(reader, outcomes);
    }
    if (goesOn) {
        reader.EndData();
        require(!takeAll(reader, outcomes), "the end of the connection is an outcome");
    }
    // Up to eight bytes are looked at anew whenever one arrives, and twice whenever one in front of them
    // goes, until the form of a message is known; then each is looked at once.
    constexpr qint64 mostOften = 8 * 3 + 1;
    require(reader.GetExaminedBytes() <= mostOften * size, "bytes are examined a few times at most");
    return outcomes;
}

void requireSame(const QVector<Outcome>& one, const QVector<Outcome>& other)
{
    require(one.size() == other.size(), "the pieces have as many outcomes as the whole");
    for (int i = 0; i < one.size(); ++i) {
        const Outcome& left = one.at(i);
        const Outcome& right = other.at(i);
        require(left.outcome == right.outcome, "the outcomes are the same");
        require(left.form == right.form, "the forms are the same");
        require(left.offset == right.offset, "the offsets are the same");
        require(left.failure.kind == right.failure.kind, "the kinds of failures are the same");
        requireSame(left.bytes.toStdString(), right.bytes.toStdString(), "the bytes of a message");
        requireSame(left.content.toStdString(), right.content.toStdString(), "the content of a message");
        // The text for a broken connection may tell how much has arrived.
        if (left.outcome != MessageReader::Broken)
            requireSame(seenText(left), seenText(right), "the text of a failure");
    }
}

} // namespace fuzzing
