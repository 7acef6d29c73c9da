// SPDX-License-Identifier: MIT
// What a RecordingReader does with bare frames. Not installed.
#pragma once

#include "documents/Arrivals.h"
#include "documents/Frames.h"
#include "documents/RecordingSource.h"

#include "modelkit/Devices.h"
#include "modelkit/Failure.h"

#include <QtCore/QString>

namespace ROUTERDOCUMENTS {

// Frames end where their lengths say. Behind a frame without a possible length, only a class id shows where
// the next one begins.
class RecordingReader::FrameMachine : public RecordingReader::Source
{
public:
    FrameMachine(QIODevice& device, const FrameFormat& format);

    bool ReadNext(RecordedMessage& message) override;
    void Reject(const RecordedMessage& message) override;
    qint64 GetExaminedBytes() const override { return m_examined; }

private:
    enum class Step
    {
        Done,
        NeedsMore,
        Found,
        Finished
    };

    Step TakeStep(RecordedMessage& message);
    Step FindEnd(RecordedMessage& message);
    Step LeaveRejected();
    // The first place where a frame may begin inside the rejected one; its end if there is none.
    qint64 PlaceInside();
    Step Search();
    void FetchMore(MODELKIT::Intake& intake);
    // Passes over what follows, up to the next frame, and then tells the failure.
    Step BeginSearch(MODELKIT::Failure::Kind kind, const QString& text);
    // Whether a frame with a class id and a possible length may begin there; at least a header must follow.
    bool MayBegin(qint64 at) const;
    MODELKIT::Failure FailureHere(MODELKIT::Failure::Kind kind, const QString& text) const;

    const FrameFormat m_format;
    const qint64 m_headerSize;
    Arrivals m_arrivals;
    qint64 m_limit = 0;
    bool m_isAll = false;
    bool m_isOver = false;
    bool m_isSearching = false;
    // What is told when the search is over, and how much it has passed over.
    MODELKIT::Failure m_failure;
    qint64 m_passed = 0;
    qint64 m_count = 0;
    // The size of the frame that was put back because it cannot be read; 0 if there is none.
    qint64 m_rejected = 0;
    qint64 m_allRejected = 0;
    qint64 m_examined = 0;
};

} // namespace ROUTERDOCUMENTS
