// SPDX-License-Identifier: MIT
// What a RecordingReader does with bare frames. Not installed.
#pragma once

#include "documents/Frames.h"
#include "documents/RecordingSource.h"

#include "modelkit/Failure.h"

#include <QtCore/QString>

namespace ROUTERDOCUMENTS {

// Frames end where their lengths say. Behind a frame without a possible length, only a class id shows where
// the next one begins.
class RecordingReader::FrameMachine : public RecordingReader::Source
{
public:
    FrameMachine(QIODevice& device, const FrameFormat& format);

    void Reject(const RecordedMessage& message) override;

private:
    Step TakeStep(RecordedMessage& message) override;
    bool IsNothingBegun() const override;
    QString NameOfMessage() const override { return QStringLiteral("frame"); }
    Step FindEnd(RecordedMessage& message);
    Step LeaveRejected();
    // The first place where a frame may begin inside the rejected one; its end if there is none.
    qint64 PlaceInside();
    Step Search();
    // Passes over what follows, up to the next frame, and then tells the failure.
    Step BeginSearch(MODELKIT::Failure::Kind kind, const QString& text);
    // Whether a frame with a class id and a possible length may begin there; at least a header must follow.
    bool MayBegin(qint64 at) const;

    const FrameFormat m_format;
    const qint64 m_headerSize;
    bool m_isSearching = false;
    // What is told when the search is over, and how much it has passed over.
    MODELKIT::Failure m_failure;
    qint64 m_passed = 0;
};

} // namespace ROUTERDOCUMENTS
