// SPDX-License-Identifier: MIT
#include "DirectOutput.h"

#include "Finding.h"
#include "Output.h"

#include "modelkit/Devices.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace routermsg {

namespace {

// While it lives, writing to a pipe that nobody reads fails, and does not end the program.
class NoPipeSignal
{
public:
    NoPipeSignal()
    {
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        sigemptyset(&m_pipe);
        sigaddset(&m_pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &m_pipe, &m_before);
    }
    NoPipeSignal(const NoPipeSignal&) = delete;
    NoPipeSignal& operator=(const NoPipeSignal&) = delete;
    ~NoPipeSignal()
    {
        const timespec atOnce{};
        while (!m_wasPending && sigtimedwait(&m_pipe, nullptr, &atOnce) < 0 && errno == EINTR) {
        }
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }

private:
    sigset_t m_pipe{};
    sigset_t m_before{};
    bool m_wasPending = false;
};

std::optional<int> descriptorInName(const QString& path)
{
    constexpr const char* standardStreams[] = {"/dev/stdin", "/dev/stdout", "/dev/stderr"};
    for (int descriptor = 0; descriptor < 3; ++descriptor)
        if (path == QLatin1String(standardStreams[descriptor]))
            return descriptor;
    static const QRegularExpression pattern(QStringLiteral("^/(?:dev|proc/self)/fd/([0-9]{1,9})$"));
    const QRegularExpressionMatch match = pattern.match(path);
    return match.hasMatch() ? std::make_optional(match.captured(1).toInt()) : std::nullopt;
}

// Of what the path leads to; 0 if there is nothing.
mode_t modeAt(const QString& path)
{
    struct stat status = {};
    return stat(path.toUtf8().constData(), &status) == 0 ? status.st_mode : 0;
}

// Opening the name of a descriptor again would fail for a socket, and begin a file from its start.
int openAt(const QString& path)
{
    if (const auto descriptor = descriptorNamedBy(path))
        return fcntl(*descriptor, F_DUPFD_CLOEXEC, 0);
    int opened = -1;
    do {
        opened = open(path.toUtf8().constData(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    } while (opened < 0 && errno == EINTR);
    return opened;
}

QString reasonFor(int error)
{
    return error == EPIPE ? QStringLiteral("its reader has gone away") : qt_error_string(error);
}

} // namespace

std::optional<int> descriptorNamedBy(const QString& path)
{
    QString name = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    constexpr int mostLinks = 40;
    for (int links = 0; links < mostLinks; ++links) {
        if (const auto descriptor = descriptorInName(name))
            return descriptor;
        const QFileInfo file(name);
        if (!file.isSymLink())
            break;
        name = QDir::cleanPath(file.symLinkTarget());
    }
    return std::nullopt;
}

bool DirectOutput::isAt(const QString& path)
{
    const mode_t mode = modeAt(path);
    return S_ISFIFO(mode) || S_ISCHR(mode) || descriptorNamedBy(path);
}

void DirectOutput::letReaderGo(const QString& path)
{
    if (!S_ISFIFO(modeAt(path)) || descriptorNamedBy(path))
        return;
    // Fails when nobody waits.
    const int descriptor = open(path.toUtf8().constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor >= 0)
        ::close(descriptor);
}

DirectOutput::DirectOutput(const QString& path) : m_path(path), m_descriptor(openAt(path))
{
    struct stat status = {};
    if (m_descriptor < 0 || fstat(m_descriptor, &status) != 0)
        refuse(errno);
    if (S_ISBLK(status.st_mode))
        throw OutputRefusal(Finding::of(
            MODELKIT::cannotWrite(QStringLiteral("file"), QStringLiteral("it is a block device")), m_path));
}

DirectOutput::~DirectOutput()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool DirectOutput::isTerminal() const { return isatty(m_descriptor) == 1; }

void DirectOutput::write(const QByteArray& bytes)
{
    const NoPipeSignal noPipeSignal;
    const int error = writeAll(m_descriptor, bytes);
    if (error != 0)
        refuse(error);
}

void DirectOutput::close()
{
    if (::close(std::exchange(m_descriptor, -1)) != 0 && errno != EINTR)
        refuse(errno);
}

void DirectOutput::refuse(int error) const
{
    throw OutputRefusal(Finding::of(MODELKIT::cannotWrite(QStringLiteral("file"), reasonFor(error)), m_path));
}

} // namespace routermsg
