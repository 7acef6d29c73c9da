// SPDX-License-Identifier: MIT
// Work for the event loop. Not installed.
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>

#include <functional>
#include <utility>

namespace ROUTERLINK {

// Does its work once when the event loop runs, however often it was scheduled before. The work may destroy
// it.
class Later : public QObject
{
public:
    Later(QObject& parent, std::function<void()> work) : QObject(&parent), m_work(std::move(work)) {}

    void Schedule()
    {
        if (!std::exchange(m_isScheduled, true))
            QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

protected:
    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        m_isScheduled = false;
        const std::function<void()> work = m_work;
        work();
        return true;
    }

private:
    const std::function<void()> m_work;
    bool m_isScheduled = false;
};

} // namespace ROUTERLINK
