// SPDX-License-Identifier: MIT
#include "TestSupport.h"

#include <csignal>
#include <cstring>

#include <unistd.h>

namespace {

// Ends the program when a test waits forever for a thread, a process, a socket or a pipe. No test takes
// nearly as long as this allows, not even under a sanitizer.
class Watchdog : public ::testing::EmptyTestEventListener
{
    static constexpr unsigned int mostSeconds = 120;

    void OnTestStart(const ::testing::TestInfo& test) override
    {
        std::strncpy(s_test, test.name(), sizeof s_test - 1);
        std::signal(SIGALRM, bark);
        alarm(mostSeconds);
    }
    void OnTestEnd(const ::testing::TestInfo&) override { alarm(0); }

    static void bark(int)
    {
        say("\nThis test has been stopped, since it has not ended within two minutes: ");
        say(s_test);
        say("\n");
        _exit(1);
    }
    static void say(const char* words)
    {
        // The result does not matter: the program ends anyway.
        static_cast<void>(!::write(STDERR_FILENO, words, std::strlen(words)));
    }

    static char s_test[200];
};

char Watchdog::s_test[200];

// GoogleTest deletes the watchdog.
const bool isWatched = [] {
    ::testing::UnitTest::GetInstance()->listeners().Append(new Watchdog);
    return true;
}();

} // namespace

QString testing_support::projectPath(const char* path)
{
    return QStringLiteral(PROJECT_FOLDER "/") + QString::fromUtf8(path);
}
