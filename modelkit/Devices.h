// SPDX-License-Identifier: MIT
// Reading from and writing to devices; every result is checked. Not installed.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Failure.h"

#include <QtCore/QByteArray>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QString>

class QIODevice;

namespace MODELKIT {

// The name of the file, if the device is one.
QString fileNameOf(const QIODevice* device);

// What the device says about its last failure.
QString reasonOf(const QIODevice& device);

MODELKIT_EXPORT Failure cannotRead(const QIODevice* device, const QString& reason);
MODELKIT_EXPORT Failure cannotWrite(const QString& what, const QString& reason);

// Takes bytes from a device, and waits for one whose data arrive later.
class MODELKIT_EXPORT Intake
{
public:
    enum Outcome
    {
        Whole, // everything that was asked for
        Ended, // the device has no more data
        Quiet, // it has none now and waiting is impossible, but it has not reported its end
        Late,  // the time is over, and more may arrive
        Broken // the device failed or was closed; GetReason() says why
    };

    // WaitingTime: in milliseconds, for all calls of Take() together.
    Intake(QIODevice& device, int waitingTime);
    // Appends to bytes until there are that many. Allocates memory only as data arrive.
    Outcome Take(qint64 size, QByteArray& bytes);
    // Appends what has arrived, at most that many bytes. Waits only if nothing has arrived. Use it for pipes:
    // Take() would wait for the full size.
    Outcome TakeArrived(qint64 most, QByteArray& bytes);

    const QString& GetReason() const { return m_reason; }

private:
    bool Wait();
    // What ReadInto() reads with: gives the number of bytes, or a negative number and the reason.
    using Read = qint64 (*)(QIODevice&, char*, qint64, QString& reason);
    // Appends up to that many bytes, and gives their number; negative when the device has failed.
    qint64 ReadInto(QByteArray& bytes, qint64 wanted, Read read);

    QIODevice& m_device;
    QDeadlineTimer m_deadline;
    bool m_waits;
    QString m_reason;
};

// Gives the bytes that were taken last back to a device that cannot seek. During a transaction it does
// nothing, because whoever began the transaction can roll it back.
void putBack(QIODevice& device, const QByteArray& bytes);

// The rest of a device's data.
struct Input
{
    QByteArray bytes;
    // Why nothing followed the bytes, unless the device reported its end. Some devices fail at their end, as
    // a closed connection does, or merely stay quiet: only the bytes show whether something is missing.
    Failure ending;
};

// Reads to the end, within Limits::inputSize and Limits::waitingTime. A closed device is opened while it is
// read. False, with the reason in failure, when there is nothing that could be a document.
bool readToEnd(QIODevice& device, Input& input, Failure& failure);

// The input is larger than Limits::inputSize allows.
MODELKIT_EXPORT Failure inputTooLarge(qint64 limit);

// Writes all bytes. When it fails, reason is what the device gave as the reason.
MODELKIT_EXPORT bool writeAll(QIODevice& device, const QByteArray& bytes, QString& reason);

// Passes what a file has buffered to the operating system.
MODELKIT_EXPORT bool flush(QIODevice& device, QString& reason);

} // namespace MODELKIT
