// SPDX-License-Identifier: MIT
// The beginning and the end of every operation on a whole document. Not installed.
#pragma once

#include "modelkit/Exceptions.h"
#include "modelkit/Failure.h"

#include <QtCore/QString>

namespace MODELKIT {

class IMKObject;

// One operation on a whole document. It clears the thread's last failure, and records how the operation ended
// for GetLastFailure() and in the log.
class DocumentOperation
{
public:
    DocumentOperation(const IMKObject& object, const QString& file);
    DocumentOperation(const DocumentOperation&) = delete;
    DocumentOperation& operator=(const DocumentOperation&) = delete;
    // An exception that was not passed to Refuse() is recorded as an interruption.
    ~DocumentOperation();

    // Records the failure and returns false.
    bool Fail(const Failure& failure);
    bool Fail(Failure::Kind kind, const QString& text, const Place& place = Place());

    // Records an exception that is about to be passed on, and sets its place.
    void Refuse(ModelKitException& exception, Place place);

    const QString& GetFile() const { return m_file; }

    // Unlike the thread's last failure, this one is not changed by operations that a log sink calls.
    const Failure& GetOwnFailure() const { return m_failure; }

    // The failure of the thread's last operation.
    static const Failure& GetLastFailure();

private:
    void Log() const;

    const IMKObject& m_object;
    QString m_file;
    int m_exceptionsBefore;
    Failure m_failure;
};

// The failure of writing an object that validation does not allow to be written.
Failure nothingToWrite(const IMKObject& object);

} // namespace MODELKIT
