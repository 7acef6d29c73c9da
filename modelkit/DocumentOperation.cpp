// SPDX-License-Identifier: MIT
#include "modelkit/DocumentOperation.h"

#include "modelkit/IMKObject.h"
#include "modelkit/ThreadStack.h"

#include <exception>

namespace MODELKIT {

namespace {

void setLastFailure(const Failure& failure)
{
    Failure* const last = OfThread<Failure>::get();
    // After a success there is nothing to keep.
    if (last && (last->kind != Failure::None || failure.kind != Failure::None))
        *last = failure;
}

} // namespace

const Failure& DocumentOperation::GetLastFailure()
{
    static const auto* const none = new Failure;
    const Failure* const last = OfThread<Failure>::get();
    return last ? *last : *none;
}

DocumentOperation::DocumentOperation(const IMKObject& object, const QString& file)
    : m_object(object), m_file(file), m_exceptionsBefore(std::uncaught_exceptions())
{
    setLastFailure(Failure());
}

DocumentOperation::~DocumentOperation()
{
    if (m_failure.kind == Failure::None && std::uncaught_exceptions() > m_exceptionsBefore) {
        m_failure.kind = Failure::Interrupted;
        m_failure.text = QStringLiteral("The operation was interrupted by an exception.");
        m_failure.place.file = m_file;
        try {
            Log();
        } catch (...) {
            // Another exception is already in flight.
        }
    }
    // A device or a log sink may have called other operations in the meantime.
    setLastFailure(m_failure);
}

bool DocumentOperation::Fail(const Failure& failure)
{
    m_failure = failure;
    m_failure.place.file = m_file;
    setLastFailure(m_failure);
    Log();
    return false;
}

bool DocumentOperation::Fail(Failure::Kind kind, const QString& text, const Place& place)
{
    Failure failure;
    failure.kind = kind;
    failure.text = text;
    failure.place = place;
    return Fail(failure);
}

void DocumentOperation::Refuse(ModelKitException& exception, Place place)
{
    place.file = m_file;
    exception.SetPlace(place);
    Fail(Failure::Refused, exception.GetText(), place);
}

void DocumentOperation::Log() const
{
    if (const auto logger = m_object.GetLogger())
        logger->Log(Logger::Error, m_failure.GetSentence());
}

Failure nothingToWrite(const IMKObject& object)
{
    Failure failure;
    failure.kind = Failure::NothingToWrite;
    failure.text = QStringLiteral("Nothing was written: %1 lacks the data without which it is not valid.")
                       .arg(object.GetObjectName());
    return failure;
}

} // namespace MODELKIT
