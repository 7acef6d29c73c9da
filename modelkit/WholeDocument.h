// What the operations on whole XML documents and on whole binary forms share. Not installed.
#pragma once

#include "modelkit/Failure.h"
#include "modelkit/IMKObject.h"
#include "modelkit/Limits.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QIODevice;

namespace MODELKIT {

// One operation on a whole document: begins with a clean slate and notes how it ended, for
// GetLastFailure() and in the logger.
class DocumentOperation
{
public:
    DocumentOperation(const IMKObject& object, const QString& file);

    // Notes the failure and returns false.
    bool Fail(const Failure& failure);
    bool Fail(Failure::Kind kind, const QString& text, const Place& place = Place());

    // Notes an exception that is about to be passed on and gives it its place.
    void Refuse(ModelKitException& exception, Place place);

    const QString& GetFile() const { return m_file; }

private:
    const IMKObject& m_object;
    QString m_file;
};

// Reads what is left of the device, waiting for one that cannot seek, but no more than limit allows.
// On failure the failure says why.
bool readDevice(QIODevice& device, qint64 limit, QByteArray& bytes, Failure& failure);

Failure inputTooLarge(qint64 limit);

// Opens the file, if it is closed, and reads it with readDevice(); closes it again if it was closed.
bool readFile(QFile& file, QByteArray& bytes, Failure& failure);

} // namespace MODELKIT
