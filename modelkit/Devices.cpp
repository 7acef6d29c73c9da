// SPDX-License-Identifier: MIT
#include "modelkit/Devices.h"

#include "modelkit/Limits.h"

#include <QtCore/QFileDevice>
#include <QtCore/QIODevice>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <new>

#include <unistd.h>

namespace MODELKIT {

namespace {

QDeadlineTimer deadlineAfter(int milliseconds)
{
    return milliseconds == Limits::anyNumber ? QDeadlineTimer(QDeadlineTimer::Forever)
                                             : QDeadlineTimer(milliseconds);
}

// How many bytes are asked for when none are known to be there.
constexpr qint64 leastStep = qint64(4) << 10;

// The most that a QByteArray can hold in Qt 5.
constexpr qint64 mostBytes = std::numeric_limits<int>::max() - 64;

qint64 readFrom(QIODevice& device, char* data, qint64 size, QString& reason)
{
    const qint64 got = device.read(data, size);
    if (got < 0)
        reason = reasonOf(device);
    return got;
}

// QFile reads a pipe until it has all that was asked for, so the descriptor is read instead.
qint64 readArrived(QIODevice& device, char* data, qint64 size, QString& reason)
{
    auto* const file = qobject_cast<QFileDevice*>(&device);
    if (!file || !file->isSequential() || file->handle() < 0)
        return readFrom(device, data, size, reason);
    // What the device has buffered comes first.
    if (const qint64 buffered = file->bytesAvailable(); buffered > 0)
        return readFrom(device, data, std::min(buffered, size), reason);
    ssize_t got = -1;
    do
        got = ::read(file->handle(), data, static_cast<std::size_t>(size));
    while (got < 0 && errno == EINTR);
    if (got < 0)
        reason = qt_error_string(errno);
    return got;
}

} // namespace

QString fileNameOf(const QIODevice* device)
{
    const auto* file = qobject_cast<const QFileDevice*>(device);
    return file ? file->fileName() : QString();
}

QString reasonOf(const QIODevice& device)
{
    const QString reason = device.errorString();
    // These are Qt's texts when there is no reason.
    const bool isNone = reason.isEmpty() || reason == QLatin1String("Unknown error")
                        || reason == QIODevice::tr("Unknown error");
    return isNone ? QStringLiteral("the device gives no reason") : reason;
}

Failure cannotRead(const QIODevice* device, const QString& reason)
{
    const bool isFile = qobject_cast<const QFileDevice*>(device) != nullptr;
    Failure failure;
    failure.kind = Failure::InputOutput;
    failure.text = QStringLiteral("The %1 cannot be read: %2.")
                       .arg(isFile ? QStringLiteral("file") : QStringLiteral("device"), reason);
    return failure;
}

Failure cannotWrite(const QString& what, const QString& reason)
{
    Failure failure;
    failure.kind = Failure::InputOutput;
    failure.text = QStringLiteral("The %1 cannot be written: %2.").arg(what, reason);
    return failure;
}

Failure inputTooLarge(qint64 limit)
{
    Failure failure;
    failure.kind = Failure::InputTooLarge;
    failure.text = QStringLiteral("The input is larger than the limit of %1 bytes.").arg(limit);
    return failure;
}

Intake::Intake(QIODevice& device, int waitingTime)
    : m_device(device), m_deadline(deadlineAfter(waitingTime)),
      // Reading a file blocks by itself, even when it is a pipe.
      m_waits(device.isSequential() && !qobject_cast<QFileDevice*>(&device))
{}

Intake::Outcome Intake::Take(qint64 size, QByteArray& bytes)
{
    constexpr qint64 step = qint64(1) << 20;
    if (size > mostBytes)
        throw std::bad_alloc();
    bool hasWaitedInVain = false;
    while (bytes.size() < size) {
        const qint64 expected =
            m_device.isSequential() ? m_device.bytesAvailable() : m_device.size() - m_device.pos();
        const qint64 got =
            ReadInto(bytes, std::min(size - bytes.size(), std::clamp(expected, leastStep, step)), readFrom);
        if (got < 0)
            return Broken;
        if (got > 0) {
            hasWaitedInVain = false;
            continue;
        }
        if (!m_waits)
            return Ended;
        // After waiting in vain, one more attempt to read tells whether more has arrived or the device has
        // ended.
        if (hasWaitedInVain)
            return m_deadline.hasExpired() ? Late : Quiet;
        hasWaitedInVain = !Wait();
    }
    return Whole;
}

Intake::Outcome Intake::TakeArrived(qint64 most, QByteArray& bytes)
{
    if (bytes.size() > mostBytes - most)
        throw std::bad_alloc();
    for (bool hasWaitedInVain = false;; hasWaitedInVain = !Wait()) {
        const qint64 got = ReadInto(bytes, most, readArrived);
        if (got < 0)
            return Broken;
        if (got > 0)
            return Whole;
        if (!m_waits)
            return Ended;
        // As in Take(): one more attempt after waiting in vain.
        if (hasWaitedInVain)
            return m_deadline.hasExpired() ? Late : Quiet;
    }
}

qint64 Intake::ReadInto(QByteArray& bytes, qint64 wanted, Read read)
{
    const qint64 have = bytes.size();
    bytes.resize(static_cast<int>(have + wanted));
    const qint64 got = read(m_device, bytes.data() + have, wanted, m_reason);
    bytes.resize(static_cast<int>(have + std::max<qint64>(got, 0)));
    return got;
}

bool Intake::Wait()
{
    return !m_deadline.hasExpired()
           && m_device.waitForReadyRead(static_cast<int>(m_deadline.remainingTime()));
}

void putBack(QIODevice& device, const QByteArray& bytes)
{
    if (!device.isOpen() || !device.isSequential() || device.isTransactionStarted())
        return;
    for (auto at = bytes.size(); at > 0; --at)
        device.ungetChar(bytes.at(at - 1));
}

namespace {

Failure notWholeYet(const QString& text)
{
    Failure failure;
    failure.kind = Failure::NotWholeYet;
    failure.text = text;
    return failure;
}

bool readOpenToEnd(QIODevice& device, Input& input, Failure& failure)
{
    const Limits limits = Limits::Get();
    const qint64 limit = std::min(limits.inputSize, mostBytes - 1);
    if (!device.isReadable()) {
        failure = cannotRead(&device, QStringLiteral("it is not open for reading"));
        return false;
    }
    Intake intake(device, limits.waitingTime);
    // At the end, a device is asked once more.
    if (!device.isSequential())
        input.bytes.reserve(
            static_cast<int>(std::clamp<qint64>(device.size() - device.pos() + leastStep, 0, limit)));
    switch (intake.Take(limit + 1, input.bytes)) {
    case Intake::Whole:
        failure = inputTooLarge(limit);
        return false;
    case Intake::Late:
        failure = notWholeYet(QStringLiteral("The end of the document has not arrived."));
        putBack(device, input.bytes);
        return false;
    case Intake::Broken:
        input.ending = cannotRead(&device, intake.GetReason());
        if (device.isSequential() && !input.bytes.isEmpty())
            return true;
        failure = input.ending;
        return false;
    case Intake::Quiet:
        input.ending = notWholeYet(QStringLiteral("The end of the document has not arrived."));
        break;
    case Intake::Ended:
        break;
    }
    return true;
}

} // namespace

bool readToEnd(QIODevice& device, Input& input, Failure& failure)
{
    if (device.isOpen())
        return readOpenToEnd(device, input, failure);
    if (!device.open(QIODevice::ReadOnly)) {
        failure = cannotRead(&device, reasonOf(device));
        return false;
    }
    try {
        const bool isRead = readOpenToEnd(device, input, failure);
        device.close();
        return isRead;
    } catch (...) {
        try {
            device.close();
        } catch (...) {
            // Another exception is already in flight.
        }
        throw;
    }
}

bool writeAll(QIODevice& device, const QByteArray& bytes, QString& reason)
{
    for (qint64 at = 0; at < bytes.size();) {
        // A device that accepts only a part gives the reason at the next attempt.
        const qint64 written = device.write(bytes.constData() + at, bytes.size() - at);
        if (written <= 0) {
            reason = reasonOf(device);
            return false;
        }
        at += written;
    }
    return true;
}

bool flush(QIODevice& device, QString& reason)
{
    auto* const file = qobject_cast<QFileDevice*>(&device);
    if (!file)
        return true;
    // As above: the system may write only a part and give no reason yet.
    qint64 left = file->bytesToWrite();
    while (true) {
        const bool isFlushed = file->flush();
        const qint64 stillLeft = file->bytesToWrite();
        if (isFlushed && stillLeft == 0)
            return true;
        if (stillLeft >= left) {
            reason = reasonOf(device);
            return false;
        }
        left = stillLeft;
    }
}

} // namespace MODELKIT
