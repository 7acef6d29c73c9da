#include "modelkit/Devices.h"

#include "modelkit/Limits.h"

#include <QtCore/QFileDevice>
#include <QtCore/QIODevice>

#include <algorithm>
#include <limits>

namespace MODELKIT {

namespace {

QDeadlineTimer deadlineAfter(int milliseconds)
{
    return milliseconds == Limits::anyNumber ? QDeadlineTimer(QDeadlineTimer::Forever)
                                             : QDeadlineTimer(milliseconds);
}

// A container of bytes takes no more in Qt 5.
constexpr qint64 mostBytes = std::numeric_limits<int>::max() - 64;

} // namespace

QString fileNameOf(const QIODevice* device)
{
    const auto* file = qobject_cast<const QFileDevice*>(device);
    return file ? file->fileName() : QString();
}

QString reasonOf(const QIODevice& device)
{
    const QString reason = device.errorString();
    // So a device says that it has nothing to say.
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
      // Reading a file waits by itself, also where it is a pipe.
      m_waits(device.isSequential() && !qobject_cast<QFileDevice*>(&device))
{
    if (m_waits && !device.isTransactionStarted()) {
        device.startTransaction();
        m_inTransaction = true;
    }
}

Intake::~Intake()
{
    if (m_inTransaction)
        m_device.commitTransaction();
}

Intake::Outcome Intake::Take(qint64 size, QByteArray& bytes)
{
    constexpr qint64 step = qint64(1) << 20;
    constexpr qint64 leastStep = qint64(4) << 10;
    while (bytes.size() < size) {
        const qint64 have = bytes.size();
        const qint64 expected = m_device.isSequential() ? step : m_device.size() - m_device.pos();
        const qint64 wanted = std::min(size - have, std::clamp(expected, leastStep, step));
        bytes.resize(static_cast<int>(have + wanted));
        const qint64 got = m_device.read(bytes.data() + have, wanted);
        bytes.resize(static_cast<int>(have + std::max<qint64>(got, 0)));
        if (got < 0) {
            m_reason = reasonOf(m_device);
            return Broken;
        }
        if (got == 0 && !Wait())
            return m_waits && m_deadline.hasExpired() ? Late : Ended;
    }
    return Whole;
}

bool Intake::Wait()
{
    return m_waits && !m_deadline.hasExpired()
           && m_device.waitForReadyRead(static_cast<int>(m_deadline.remainingTime()));
}

void Intake::PutBack()
{
    if (m_inTransaction)
        m_device.rollbackTransaction();
    m_inTransaction = false;
}

bool readToEnd(QIODevice& device, Input& input, Failure& failure)
{
    const Limits limits = Limits::Get();
    const bool wasOpen = device.isOpen();
    if (!wasOpen && !device.open(QIODevice::ReadOnly)) {
        failure = cannotRead(&device, reasonOf(device));
        return false;
    }
    struct Closing
    {
        QIODevice& device;
        bool isDue;
        ~Closing()
        {
            if (isDue)
                device.close();
        }
    } const closing{device, !wasOpen};
    if (!device.isReadable()) {
        failure = cannotRead(&device, QStringLiteral("it is not open for reading"));
        return false;
    }
    Intake intake(device, limits.waitingTime);
    if (!device.isSequential())
        input.bytes.reserve(static_cast<int>(
            std::clamp<qint64>(device.size() - device.pos(), 0, std::min(limits.inputSize, mostBytes))));
    switch (intake.Take(std::min(limits.inputSize, mostBytes - 1) + 1, input.bytes)) {
    case Intake::Whole:
        failure = inputTooLarge(std::min(limits.inputSize, mostBytes - 1));
        return false;
    case Intake::Late:
        failure.kind = Failure::NotWholeYet;
        failure.text = QStringLiteral("The end of the document has not arrived.");
        intake.PutBack();
        return false;
    case Intake::Broken:
        input.ending = cannotRead(&device, intake.GetReason());
        if (device.isSequential() && !input.bytes.isEmpty())
            return true;
        failure = input.ending;
        return false;
    case Intake::Ended:
        break;
    }
    return true;
}

bool writeAll(QIODevice& device, const QByteArray& bytes, QString& reason)
{
    for (qint64 at = 0; at < bytes.size();) {
        // A device that takes less than it is given says why only when it is asked again.
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
    auto* file = qobject_cast<QFileDevice*>(&device);
    // As above: the first time only a part may have been written, for no reason that the system gives.
    if (!file || file->flush() || file->flush())
        return true;
    reason = reasonOf(device);
    return false;
}

} // namespace MODELKIT
