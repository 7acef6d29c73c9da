// SPDX-License-Identifier: MIT
// An application with widgets that needs no screen.
#pragma once

#include <QtGui/QFont>
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
        // The same on every machine that has the font.
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
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
