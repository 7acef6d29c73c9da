// SPDX-License-Identifier: MIT
// Matches replies to requests. Not installed.
#pragma once

#include "link/PendingRequest.h"

#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtCore/QQueue>
#include <QtCore/QVector>

#include <chrono>

namespace ROUTERLINK {

class Requests
{
public:
    using Document = PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;

    // Whose reply it is.
    enum Match
    {
        Expected, // that of a request, which has finished
        Late,     // that of a request that has finished without it
        Unknown
    };

    // Parent: of the requests.
    explicit Requests(QObject& parent) : m_parent(parent) {}
    Requests(const Requests&) = delete;
    Requests& operator=(const Requests&) = delete;
    ~Requests();

    // An id that no request has.
    unsigned int NextID();
    bool IsPending(unsigned int messageID) const { return m_pending.contains(messageID); }

    // A request that has been sent.
    PendingRequest* Add(unsigned int messageID, std::chrono::milliseconds timeout);
    // A request that could not be sent. It finishes when the event loop runs.
    PendingRequest* AddFailed(const MODELKIT::Failure& failure);

    Match Take(unsigned int messageID, const Document& reply);
    // Finishes all requests.
    void FailAll(const MODELKIT::Failure& failure);

private:
    // One that is made while the parent is destroyed, by a receiver of another one's end. It would go with
    // the parent and finish never.
    static PendingRequest* AddOrphan(const MODELKIT::Failure& failure);
    void Remember(unsigned int messageID);
    void TimeOut(PendingRequest* request, std::chrono::milliseconds timeout);
    static void Finish(const QPointer<PendingRequest>& request, const RequestResult& result);

    QObject& m_parent;
    QHash<unsigned int, QPointer<PendingRequest>> m_pending;
    struct Unsent
    {
        QPointer<PendingRequest> request;
        MODELKIT::Failure failure;
    };
    QVector<Unsent> m_unsent;
    // The ids of the last requests that have finished without a reply.
    QQueue<unsigned int> m_without;
    unsigned int m_lastID = 0;
    bool m_isOver = false;
};

} // namespace ROUTERLINK
