// SPDX-License-Identifier: MIT
// The child processes of tests report everything that goes wrong in them.

#include "ChildProcess.h"
#include "TestSupport.h"

#include <gtest/gtest-spi.h>

#include <csignal>
#include <stdexcept>

using namespace testing_support;

TEST(ChildProcess, TellsItsStatusAndWhatItSaid)
{
    // More than a pipe holds at once.
    const QByteArray much(1000000, 'x');
    const ChildEnd end = runInChild([&much](QByteArray& said) {
        said = much;
        return 7;
    });
    EXPECT_EQ(end.status, 7);
    EXPECT_EQ(end.signal, 0);
    EXPECT_TRUE(end.said == much);
}

TEST(ChildProcess, TellsTheSignalThatEndsIt)
{
    const ChildEnd end = runInChild([](QByteArray& said) {
        said = "nobody hears this";
        return std::raise(SIGKILL);
    });
    EXPECT_FALSE(end.status.has_value());
    EXPECT_EQ(end.signal, SIGKILL);
    EXPECT_EQ(end.said, QByteArray());
    EXPECT_EQ(::testing::PrintToString(end), "ended by signal 9, said \"\"");
}

TEST(ChildProcess, FailsTheTestWithAnExceptionThatLeavesIt)
{
    EXPECT_NONFATAL_FAILURE(runInChild([](QByteArray&) -> int { throw std::runtime_error("on purpose"); }),
                            "An assertion failed in the child process");
}
