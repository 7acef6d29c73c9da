// SPDX-License-Identifier: MIT
// Runs a part of a test in its own process, because it must not happen in the process of all tests, such as
// giving up privileges, or because it might end the process.
#pragma once

#include <QtCore/QByteArray>

#include <functional>
#include <iosfwd>
#include <optional>

namespace testing_support {

// How the process ended, and what it said.
struct ChildEnd
{
    // The exit status; none when a signal ended the process.
    std::optional<int> status;
    int signal = 0;
    QByteArray said;
};

void PrintTo(const ChildEnd& end, std::ostream* out);

// Runs the task in a copy of this process and waits for its end; SIGALRM ends it after a minute. The task
// returns the exit status. An assertion that fails in it, or an exception that leaves it, fails the calling
// test.
ChildEnd runInChild(const std::function<int(QByteArray& said)>& task);

} // namespace testing_support
