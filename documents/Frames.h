// SPDX-License-Identifier: MIT
// Reading bare frames. Not installed.
#pragma once

#include "documents/FrameFormat.h"
#include "documents/Validation.h"

#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <memory>

namespace ROUTERDOCUMENTS {

// The size of what is in front of the content: the id, if there is one, and the length.
qint64 headerSizeOf(const FrameFormat& format);

// Throws std::logic_error when frames in this format do not tell their class, and nothing else does.
void requireClass(const FrameFormat& format, const PELLU300ROUTERINTERFACEXML::RecordInfo* info);

// What the first bytes of a frame tell; there must be as many as the header has.
struct FrameHeader
{
    FrameHeader(const char* bytes, const FrameFormat& format);

    bool hasId = true;
    quint32 id = 0;
    // The class that the id tells; null when it tells none.
    const PELLU300ROUTERINTERFACEXML::RecordInfo* info = nullptr;
    bool isCompressed = false;
    // Of the content.
    qint32 length = 0;

    // False for bytes whose id is unknown.
    bool isFrame() const { return !hasId || info || isCompressed; }
    // What is wrong with bytes that are no frame, without a full stop.
    QString whyNoFrame() const;
};

// The record in a frame that is not compressed. The limits in force apply, and a reading report gets its
// entries.
// info: the class of the record; may be null for a frame with a class id.
// Throws DocumentError when the bytes are not exactly one frame of the class or a limit is exceeded, and what
// the record throws, with the offset in the frame.
std::unique_ptr<MODELKIT::IMKObject> readFrame(const QByteArray& bytes, const FrameFormat& format,
                                               const PELLU300ROUTERINTERFACEXML::RecordInfo* info,
                                               Validation validation);

// Whether the frame is a compressed form.
bool isCompressedFrame(const QByteArray& bytes, const FrameFormat& format);
// The same compressed form in the usual byte order.
QByteArray inUsualOrder(const QByteArray& compressed, const FrameFormat& format);

} // namespace ROUTERDOCUMENTS
