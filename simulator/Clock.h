// SPDX-License-Identifier: MIT
// The time of the simulator. Tests have a clock that they turn themselves.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <chrono>
#include <functional>

namespace ROUTERSIM {

class Clock
{
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    // Never before it has returned, and not at all when the context is destroyed before.
    virtual void CallAfter(qint64 milliseconds, QObject& context, const std::function<void()>& action) = 0;
};

class TimerClock : public Clock
{
public:
    void CallAfter(qint64 milliseconds, QObject& context, const std::function<void()>& action) override
    {
        auto* const timer = new QTimer(&context);
        timer->setTimerType(Qt::PreciseTimer);
        timer->setSingleShot(true);
        QObject::connect(timer, &QTimer::timeout, &context, [timer, action] {
            timer->deleteLater();
            action();
        });
        timer->start(std::chrono::milliseconds(milliseconds));
    }
};

} // namespace ROUTERSIM
