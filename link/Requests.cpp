// SPDX-License-Identifier: MIT
#include "link/Requests.h"

#include <QtCore/QTimer>

#include <algorithm>
#include <limits>
#include <utility>

namespace ROUTERLINK {

using MODELKIT::Failure;

namespace {

// So many requests that have finished without a reply are remembered.
constexpr int mostRemembered = 1024;

// Calls the action once, unless the request is deleted before.
template <class Action>
void startTimer(PendingRequest& request, std::chrono::milliseconds time, const Action& action)
{
    auto* const timer = new QTimer(&request);
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, &request, action);
    timer->start(time);
}

} // namespace

Requests::~Requests()
{
    m_isOver = true;
    FailAll({Failure::InputOutput, QStringLiteral("The channel was destroyed before the reply came."), {}});
}

unsigned int Requests::NextID()
{
    do
        ++m_lastID;
    while (m_lastID == 0 || m_pending.contains(m_lastID) || m_without.contains(m_lastID));
    return m_lastID;
}

PendingRequest* Requests::Add(unsigned int messageID, std::chrono::milliseconds timeout)
{
    auto* const request = new PendingRequest(messageID, &m_parent);
    m_pending.insert(messageID, request);
    m_without.removeOne(messageID);
    QObject::connect(request, &QObject::destroyed, &m_parent, [this, messageID] {
        const auto found = m_pending.find(messageID);
        if (found == m_pending.end() || *found)
            return;
        m_pending.erase(found);
        Remember(messageID);
    });
    timeout = std::clamp(timeout, std::chrono::milliseconds(0),
                         std::chrono::milliseconds(std::numeric_limits<int>::max()));
    startTimer(*request, timeout, [this, request, timeout] { TimeOut(request, timeout); });
    return request;
}

PendingRequest* Requests::AddFailed(const Failure& failure)
{
    if (m_isOver)
        return AddOrphan(failure);
    auto* const request = new PendingRequest(0, &m_parent);
    // Those whose requests were deleted are of no use.
    m_unsent.erase(std::remove_if(m_unsent.begin(), m_unsent.end(),
                                  [](const Unsent& unsent) { return unsent.request.isNull(); }),
                   m_unsent.end());
    m_unsent.append({request, failure});
    startTimer(*request, std::chrono::milliseconds(0), [this, request, failure] {
        const auto found = std::find_if(m_unsent.begin(), m_unsent.end(), [request](const Unsent& unsent) {
            return unsent.request == request;
        });
        if (found == m_unsent.end())
            return;
        m_unsent.erase(found);
        Finish(request, {RequestResult::Failed, {}, failure});
    });
    return request;
}

PendingRequest* Requests::AddOrphan(const Failure& failure)
{
    auto* const request = new PendingRequest(0, nullptr);
    startTimer(*request, std::chrono::milliseconds(0), [request, failure] {
        Finish(request, {RequestResult::Failed, {}, failure});
    });
    return request;
}

Requests::Match Requests::Take(unsigned int messageID, const Document& reply)
{
    if (const QPointer<PendingRequest> request = m_pending.take(messageID)) {
        Finish(request, {RequestResult::Replied, reply, {}});
        return Expected;
    }
    return m_without.removeOne(messageID) ? Late : Unknown;
}

void Requests::FailAll(const Failure& failure)
{
    const auto pending = std::exchange(m_pending, {});
    const auto unsent = std::exchange(m_unsent, {});
    for (const Unsent& one : unsent)
        Finish(one.request, {RequestResult::Failed, {}, one.failure});
    for (const QPointer<PendingRequest>& request : pending)
        Finish(request, {RequestResult::Failed, {}, failure});
}

void Requests::Remember(unsigned int messageID)
{
    m_without.enqueue(messageID);
    if (m_without.size() > mostRemembered)
        m_without.dequeue();
}

void Requests::TimeOut(PendingRequest* request, std::chrono::milliseconds timeout)
{
    // It may have finished, and another request may have its id.
    const unsigned int messageID = request->GetMessageID();
    if (m_pending.value(messageID) != request)
        return;
    m_pending.remove(messageID);
    Remember(messageID);
    const QString text = QStringLiteral("No reply to the request %1 has come within %2 ms.")
                             .arg(QString::number(messageID), QString::number(timeout.count()));
    Finish(request, {RequestResult::TimedOut, {}, {Failure::NotWholeYet, text, {}}});
}

void Requests::Finish(const QPointer<PendingRequest>& request, const RequestResult& result)
{
    if (!request)
        return;
    Q_EMIT request->Finished(result);
    // Its receivers may have deleted it.
    if (request)
        request->deleteLater();
}

} // namespace ROUTERLINK
