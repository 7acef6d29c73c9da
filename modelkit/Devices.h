// SPDX-License-Identifier: MIT
// Reading from and writing to devices; every result counts. Not installed.
#pragma once

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

Failure cannotRead(const QIODevice* device, const QString& reason);
Failure cannotWrite(const QString& what, const QString& reason);

// Takes bytes from a device, waiting for one that delivers later.
class Intake
{
public:
    enum Outcome
    {
        Whole,
        Ended, // the device has no more to give
        Quiet, // it has nothing now and cannot be waited for, but does not say that it has ended
        Late,  // the time is over, and more may come
        Broken // the device failed or was closed; GetReason() says why
    };

    // WaitingTime: in milliseconds, for all calls together.
    Intake(QIODevice& device, int waitingTime);
    // Takes bytes until there are that many. Memory grows with what comes.
    Outcome Take(qint64 size, QByteArray& bytes);

    const QString& GetReason() const { return m_reason; }

private:
    bool Wait();

    QIODevice& m_device;
    QDeadlineTimer m_deadline;
    bool m_waits;
    QString m_reason;
};

// Gives the bytes that were taken last back to a device that cannot seek. In a transaction that is left to
// who began it.
void putBack(QIODevice& device, const QByteArray& bytes);

// What is left in a device.
struct Input
{
    QByteArray bytes;
    // Why nothing came behind the bytes, unless the device told its end. A connection that was closed fails,
    // and another device may only be quiet: whether something is missing is for the bytes to tell.
    Failure ending;
};

// Reads to the end, within Limits::inputSize and Limits::waitingTime. A closed device is open while it is
// read. False, with the reason in failure, when there is nothing to make a document of.
bool readToEnd(QIODevice& device, Input& input, Failure& failure);

Failure inputTooLarge(qint64 limit);

// Writes all of the bytes; the reason is the device's at the moment when it failed.
bool writeAll(QIODevice& device, const QByteArray& bytes, QString& reason);

// Brings what a file still holds back to the system.
bool flush(QIODevice& device, QString& reason);

} // namespace MODELKIT
