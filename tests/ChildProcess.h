// SPDX-License-Identifier: MIT
// A part of a test in a process of its own: for what must not happen in the process of all tests, such as
// giving up privileges, or what might end it.
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

// Runs the task in a copy of this process and waits for its end, at most for a minute: then the process is
// ended by SIGALRM. The task returns the exit status. An assertion that fails in it, or an exception that
// leaves it, fails the test that called.
ChildEnd runInChild(const std::function<int(QByteArray& said)>& task);

} // namespace testing_support
