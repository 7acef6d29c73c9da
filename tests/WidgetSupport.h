// SPDX-License-Identifier: MIT
// An application with widgets that needs no screen.
#pragma once

#include <QtGui/QFont>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QApplication>

#include <gtest/gtest.h>

// Read by the address sanitizer: the library that finds fonts keeps memory until the end.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig"; }

namespace testing_support {

class WidgetApplication : public ::testing::Environment
{
public:
    void SetUp() override
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // What a user may have set changes sizes and colours.
        qunsetenv("QT_QPA_PLATFORMTHEME");
        qunsetenv("QT_SCALE_FACTOR");
        QApplication::setStyle(QStringLiteral("fusion"));
        static int count = 1;
        static char name[] = "test";
        static char* names[] = {name, nullptr};
        // Nobody deletes it: with the application, Qt 5 forgets its screen without deleting that, which the
        // address sanitizer would take for a leak.
        static const auto* const application = new QApplication(count, names);
        static_cast<void>(application);
        // The same on every machine that has the font.
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    }
};
inline const auto* const widgetApplication = ::testing::AddGlobalTestEnvironment(new WidgetApplication);

// Whether there is a font to draw texts with.
inline bool hasFonts()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return !QFontDatabase::families().isEmpty();
#else
    return !QFontDatabase().families().isEmpty();
#endif
}

} // namespace testing_support
