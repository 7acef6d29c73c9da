// SPDX-License-Identifier: MIT
/// \file
/// A request that waits for its reply.
#pragma once

#include "link/Export.h"

#include "modelkit/Failure.h"
#include "routerinterface/RecordMetatypes.h"

#include <QtCore/QMetaType>
#include <QtCore/QObject>

namespace ROUTERLINK {

/// What has become of a request.
struct RequestResult
{
    /// How it has ended.
    enum Outcome : int
    {
        Replied,  ///< the reply has come
        TimedOut, ///< it has not come in time
        Failed    ///< the request was not sent, or the channel has closed
    };

    /// How it has ended.
    Outcome outcome = Failed;
    /// The reply, if it has come.
    PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml reply;
    /// Why it has not come; of kind Failure::NotWholeYet when it has not come in time.
    MODELKIT::Failure failure;
};

/// A request that waits for its reply; see MessageChannel::Request(). It belongs to the channel and is
/// deleted after it has finished. To wait no longer, delete it. One that is made while the channel is being
/// destroyed belongs to nobody, and finishes when the event loop runs.
class ROUTERLINK_EXPORT PendingRequest : public QObject
{
    Q_OBJECT

public:
    /// Finished() is not emitted any more if it was not yet.
    ~PendingRequest() override;

    /// The MessageID of the request and its reply; 0 if it was not sent.
    unsigned int GetMessageID() const { return m_messageID; }

Q_SIGNALS:
    /// The request has ended. Emitted exactly once, and never before MessageChannel::Request() has returned.
    void Finished(const ROUTERLINK::RequestResult& result);

private:
    friend class Requests;
    PendingRequest(unsigned int messageID, QObject* parent);

    const unsigned int m_messageID;
};

} // namespace ROUTERLINK

Q_DECLARE_METATYPE(ROUTERLINK::RequestResult)
