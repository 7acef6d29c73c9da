// SPDX-License-Identifier: MIT
#include "documents/Frames.h"

#include "documents/DocumentError.h"

#include "modelkit/Devices.h"
#include "modelkit/DocumentContext.h"
#include "modelkit/FormHeader.h"
#include "modelkit/Limits.h"

#include <QtCore/QtEndian>

#include <stdexcept>

namespace ROUTERDOCUMENTS {

using MODELKIT::DocumentContext;
using MODELKIT::Failure;
using MODELKIT::FormHeader;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

constexpr qint64 frameWord = 4;

quint32 wordAt(const char* bytes, const FrameFormat& format)
{
    return format.byteOrder == QDataStream::BigEndian ? qFromBigEndian<quint32>(bytes)
                                                      : qFromLittleEndian<quint32>(bytes);
}

[[noreturn]] void failFrame(Failure::Kind kind, const QString& text, qint64 offset)
{
    Failure failure;
    failure.kind = kind;
    failure.text = text;
    failure.place.offset = offset;
    throw DocumentError(failure);
}

QString bytesThat(qint64 bytes, const QString& one, const QString& several)
{
    return bytes == 1 ? QStringLiteral("1 byte ") + one : QStringLiteral("%1 bytes ").arg(bytes) + several;
}

// The header of bytes that are exactly one frame.
FrameHeader requireFrame(const QByteArray& bytes, const FrameFormat& format, const RecordInfo* info)
{
    const qint64 limit = MODELKIT::Limits::Get().inputSize;
    const qint64 headerSize = headerSizeOf(format);
    if (bytes.size() > limit)
        throw DocumentError(MODELKIT::inputTooLarge(limit));
    if (bytes.size() < headerSize)
        failFrame(Failure::NotABinaryForm, QStringLiteral("The frame is cut off; its length is missing."),
                  bytes.size());
    const FrameHeader header(bytes.constData(), format);
    if (!header.isFrame())
        failFrame(Failure::WrongClass, header.whyNoFrame() + QLatin1Char('.'), 0);
    if (header.info && info && header.info != info)
        failFrame(Failure::WrongClass,
                  QStringLiteral("The frame holds %1, expected is %2.")
                      .arg(header.info->GetName(), info->GetName()),
                  0);
    if (header.length < 0)
        failFrame(Failure::NotABinaryForm, QStringLiteral("The frame has a negative length."), 0);
    const qint64 behind = bytes.size() - headerSize - header.length;
    if (behind < 0)
        failFrame(Failure::NotABinaryForm,
                  QStringLiteral("The frame is cut off; %1.")
                      .arg(bytesThat(-behind, QStringLiteral("is missing"), QStringLiteral("are missing"))),
                  bytes.size());
    // No report could tell: what follows a frame with a wrong length is lost.
    if (behind > 0)
        failFrame(Failure::NotABinaryForm,
                  bytesThat(behind, QStringLiteral("follows"), QStringLiteral("follow"))
                      + QStringLiteral(" behind the end of the frame."),
                  bytes.size() - behind);
    return header;
}

// Calls the record's own operation on the content of a frame.
void readContentOfFrame(MODELKIT::IMKObject& record, const QByteArray& content, const FrameFormat& format,
                        DocumentContext& context)
{
    const qint64 headerSize = headerSizeOf(format);
    context.SetBaseOffset(headerSize);
    try {
        record.Reset();
        QDataStream stream(content);
        stream.setByteOrder(format.byteOrder);
        record.SetBinary(stream, static_cast<int>(content.size()));
    } catch (ModelKitException& exception) {
        MODELKIT::Place place = exception.GetPlace();
        if (place.offset >= 0)
            place.offset += headerSize;
        exception.SetPlace(place);
        Failure failure = context.GetFailure();
        // When the lengths are wrong, what was reported may be about bytes that were never entries.
        if (failure.kind != Failure::None || dynamic_cast<const BinaryParsingException*>(&exception))
            context.DropReport();
        if (failure.kind != Failure::None) {
            failure.place = place;
            throw DocumentError(failure);
        }
        throw;
    }
}

} // namespace

qint64 headerSizeOf(const FrameFormat& format) { return format.hasId ? 2 * frameWord : frameWord; }

void requireClass(const FrameFormat& format, const RecordInfo* info)
{
    if (!format.hasId && !info)
        throw std::logic_error("A frame without a class id does not tell its class.");
}

FrameHeader::FrameHeader(const char* bytes, const FrameFormat& format) : hasId(format.hasId)
{
    length = static_cast<qint32>(wordAt(bytes + headerSizeOf(format) - frameWord, format));
    if (!hasId)
        return;
    id = wordAt(bytes, format);
    info = RecordInfo::FindByFrameId(id);
    isCompressed = id == static_cast<quint32>(FormHeader::compressedMarker);
}

QString FrameHeader::whyNoFrame() const
{
    return QStringLiteral("The frame has the class id %1, which no record has")
        .arg(QString::number(id, 16).rightJustified(2 * frameWord, QLatin1Char('0')).toUpper());
}

std::unique_ptr<MODELKIT::IMKObject> readFrame(const QByteArray& bytes, const FrameFormat& format,
                                               const RecordInfo* info, Validation validation)
{
    requireClass(format, info);
    const FrameHeader header = requireFrame(bytes, format, info);
    const RecordInfo* const ofRecord = header.info ? header.info : info;
    Q_ASSERT(ofRecord);
    auto record = ofRecord->Create();
    record->SetValidate(validation == Validation::On);
    const auto content = QByteArray::fromRawData(bytes.constData() + headerSizeOf(format), header.length);
    DocumentContext context(DocumentContext::Purpose::Reading);
    const auto deliver = [&context] { context.DeliverReport([](qint64) { return MODELKIT::Place(); }); };
    try {
        readContentOfFrame(*record, content, format, context);
    } catch (...) {
        deliver();
        throw;
    }
    deliver();
    return record;
}

bool isCompressedFrame(const QByteArray& bytes, const FrameFormat& format)
{
    return format.hasId && bytes.size() >= headerSizeOf(format)
           && FrameHeader(bytes.constData(), format).isCompressed;
}

QByteArray inUsualOrder(const QByteArray& compressed, const FrameFormat& format)
{
    QByteArray form = compressed;
    for (qint64 at = 0; at < headerSizeOf(format); at += frameWord)
        qToBigEndian<quint32>(wordAt(compressed.constData() + at, format), form.data() + at);
    return form;
}

} // namespace ROUTERDOCUMENTS
