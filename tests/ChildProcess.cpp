// SPDX-License-Identifier: MIT
#include "ChildProcess.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <ostream>

#include <sys/wait.h>
#include <unistd.h>

namespace testing_support {

namespace {

constexpr unsigned int mostSeconds = 60;
// Reserved for failed assertions: no task may return it.
constexpr int taskFailed = 99;

bool writeAll(int descriptor, const QByteArray& content)
{
    qint64 written = 0;
    while (written < content.size()) {
        const ssize_t taken =
            ::write(descriptor, content.constData() + written, static_cast<size_t>(content.size() - written));
        if (taken < 0)
            return false;
        written += taken;
    }
    return true;
}

[[noreturn]] void runTask(const std::function<int(QByteArray& said)>& task, int answer)
{
    std::signal(SIGALRM, SIG_DFL);
    alarm(mostSeconds);
    QByteArray said;
    int status = taskFailed;
    try {
        status = task(said);
    } catch (const std::exception& exception) {
        ADD_FAILURE() << "The child process threw: " << exception.what();
    }
    std::fflush(stdout);
    const bool isWell = writeAll(answer, said) && !::testing::Test::HasFailure();
    _exit(isWell ? status : taskFailed);
}

QByteArray readAll(int descriptor)
{
    QByteArray content;
    char buffer[4096];
    for (;;) {
        const ssize_t got = ::read(descriptor, buffer, sizeof buffer);
        if (got > 0)
            content.append(buffer, static_cast<int>(got));
        else if (got == 0 || errno != EINTR)
            return content;
    }
}

} // namespace

void PrintTo(const ChildEnd& end, std::ostream* out)
{
    if (end.status)
        *out << "ended with status " << *end.status;
    else
        *out << "ended by signal " << end.signal;
    *out << ", said \"" << end.said.constData() << '"';
}

ChildEnd runInChild(const std::function<int(QByteArray& said)>& task)
{
    ChildEnd end;
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0) {
        ADD_FAILURE() << "There is no pipe to a child process.";
        return end;
    }
    // Text that is still buffered would be printed by both processes.
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        ::close(ends[0]);
        runTask(task, ends[1]);
    }
    ::close(ends[1]);
    // Only the child holds the other end of the pipe, so reading and waiting end when the child ends.
    end.said = readAll(ends[0]);
    ::close(ends[0]);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        ADD_FAILURE() << "There is no child process.";
        return end;
    }
    if (WIFEXITED(status))
        end.status = WEXITSTATUS(status);
    else
        end.signal = WTERMSIG(status);
    EXPECT_NE(end.status, taskFailed) << "An assertion failed in the child process; see above.";
    return end;
}

} // namespace testing_support
