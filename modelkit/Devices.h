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
        Late,  // the time is over, and more may come
        Broken // the device failed; GetReason() says why
    };

    // WaitingTime: in milliseconds, for all calls together.
    Intake(QIODevice& device, int waitingTime);
    Intake(const Intake&) = delete;
    Intake& operator=(const Intake&) = delete;
    ~Intake();

    // Takes bytes until there are that many. Memory grows with what comes.
    Outcome Take(qint64 size, QByteArray& bytes);

    const QString& GetReason() const { return m_reason; }

    // Gives everything back to a device that was waited for.
    void PutBack();

private:
    bool Wait();

    QIODevice& m_device;
    QDeadlineTimer m_deadline;
    bool m_waits;
    bool m_inTransaction = false;
    QString m_reason;
};

// What is left in a device.
struct Input
{
    QByteArray bytes;
    // Why the device broke off behind the bytes, if it did. A connection that was closed does: whether
    // something is missing is for the bytes to tell.
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
