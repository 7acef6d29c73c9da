// SPDX-License-Identifier: MIT
// An application with widgets that needs no screen.
#pragma once

#include <QtWidgets/QApplication>

#include <gtest/gtest.h>

#include <memory>

namespace testing_support {

class WidgetApplication : public ::testing::Environment
{
public:
    void SetUp() override
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        QApplication::setStyle(QStringLiteral("fusion"));
        m_application = std::make_unique<QApplication>(m_count, m_names);
    }
    void TearDown() override { m_application.reset(); }

private:
    int m_count = 1;
    char m_name[5] = "test";
    char* m_names[2] = {m_name, nullptr};
    std::unique_ptr<QApplication> m_application;
};
inline const auto* const widgetApplication = ::testing::AddGlobalTestEnvironment(new WidgetApplication);

} // namespace testing_support
