// SPDX-License-Identifier: MIT
// An application with an event loop, for tests of what happens in one.
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEvent>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace testing_support {

class Application : public ::testing::Environment
{
public:
    void SetUp() override { m_application = std::make_unique<QCoreApplication>(m_count, m_names); }
    void TearDown() override { m_application.reset(); }

private:
    int m_count = 1;
    char m_name[5] = "test";
    char* m_names[2] = {m_name, nullptr};
    std::unique_ptr<QCoreApplication> m_application;
};
inline const auto* const application = ::testing::AddGlobalTestEnvironment(new Application);

// Runs the event loop until it is so.
inline void waitUntil(const std::function<bool()>& isSo)
{
    const QDeadlineTimer deadline(60000);
    while (!isSo()) {
        ASSERT_FALSE(deadline.hasExpired());
        QCoreApplication::processEvents();
        if (isSo())
            return;
        // What other threads do is no event here.
        QEventLoop loop;
        QTimer::singleShot(1, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

// Lets everything happen that needs no time.
inline void settle()
{
    for (int i = 0; i < 100; ++i)
        QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace testing_support
