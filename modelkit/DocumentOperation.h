// SPDX-License-Identifier: MIT
// How the operations on whole documents begin and end. Not installed.
#pragma once

#include "modelkit/Exceptions.h"
#include "modelkit/Failure.h"

#include <QtCore/QString>

namespace MODELKIT {

class IMKObject;

// One operation on a whole document: begins with a clean slate and notes how it ended, for
// GetLastFailure() and in the logger.
class DocumentOperation
{
public:
    DocumentOperation(const IMKObject& object, const QString& file);
    DocumentOperation(const DocumentOperation&) = delete;
    DocumentOperation& operator=(const DocumentOperation&) = delete;
    // An exception that nobody has refused is noted as an interruption.
    ~DocumentOperation();

    // Notes the failure and returns false.
    bool Fail(const Failure& failure);
    bool Fail(Failure::Kind kind, const QString& text, const Place& place = Place());

    // Notes an exception that is about to be passed on and gives it its place.
    void Refuse(ModelKitException& exception, Place place);

    const QString& GetFile() const { return m_file; }

    // Unlike the thread's last failure this one is not changed by operations that a log sink calls.
    const Failure& GetOwnFailure() const { return m_failure; }

    // That of the thread's last operation.
    static const Failure& GetLastFailure();

private:
    void Log() const;

    const IMKObject& m_object;
    QString m_file;
    int m_exceptionsBefore;
    Failure m_failure;
};

// That validation lets nothing of the object be written.
Failure nothingToWrite(const IMKObject& object);

} // namespace MODELKIT
