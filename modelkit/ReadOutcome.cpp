// SPDX-License-Identifier: MIT
#include "modelkit/ReadOutcome.h"

#include "modelkit/DocumentOperation.h"
#include "modelkit/Exceptions.h"

#include <exception>

namespace MODELKIT {

namespace {

// Checks what was read as an operation of its own, so that the failure is logged.
void checkRead(const IMKObject& object, const QString& file)
{
    DocumentOperation operation(object, file);
    try {
        object.Check();
    } catch (ModelKitException& exception) {
        operation.Refuse(exception, exception.GetPlace());
        throw;
    }
}

// The failure of an operation that an exception has ended. One that had not begun left no failure.
Failure failureAfter(const std::exception& exception, bool hasBegun)
{
    Failure failure;
    if (hasBegun)
        failure = IMKObject::GetLastFailure();
    if (failure.kind == Failure::None || failure.kind == Failure::Interrupted) {
        failure.kind = Failure::Interrupted;
        failure.text = QStringLiteral("The operation was interrupted by an exception: %1")
                           .arg(QString::fromUtf8(exception.what()));
    }
    return failure;
}

// Read: returns as the operations of IMKObject do.
template <class Read>
ReadOutcome readWith(IMKObject& object, const ReadOptions& options, const Read& read)
{
    ReadOutcome outcome;
    {
        std::optional<LimitsInScope> limits;
        if (options.limits)
            limits.emplace(*options.limits);
        std::optional<ReadingReport> report;
        if (options.report)
            report.emplace();

        bool hasBegun = false;
        try {
            if (options.validate)
                object.SetValidate(true);
            hasBegun = true;
            if (!read())
                outcome.failure = IMKObject::GetLastFailure();
        } catch (const std::exception& exception) {
            outcome.failure = failureAfter(exception, hasBegun);
        }

        if (report) {
            outcome.entries = report->GetEntries();
            outcome.dropped = report->GetDropped();
            outcome.isReported = true;
        }
    }
    ReadingReport::Add(outcome.entries, outcome.dropped);
    return outcome;
}

// For operations that do not check themselves.
template <class Read>
ReadOutcome readAndCheck(IMKObject& object, const ReadOptions& options, const QString& file, const Read& read)
{
    return readWith(object, options, [&] {
        if (!read())
            return false;
        if (options.check)
            checkRead(object, file);
        return true;
    });
}

} // namespace

bool ReadOutcome::HasLostNothing() const { return *this && isReported && entries.isEmpty() && dropped == 0; }

ReadOutcome TryReadXml(IMKObject& object, const QByteArray& xml, const ReadOptions& options)
{
    return readWith(object, options, [&] { return object.SetXmlBytes(xml, options.check); });
}

ReadOutcome TryReadXmlString(IMKObject& object, const QString& xml, const ReadOptions& options)
{
    return readWith(object, options, [&] { return object.SetXmlString(xml, options.check); });
}

ReadOutcome TryLoadXml(IMKObject& object, const QString& path, const ReadOptions& options)
{
    return readAndCheck(object, options, path, [&] { return object.LoadXml(path); });
}

ReadOutcome TryLoadXml(IMKObject& object, QIODevice* device, const ReadOptions& options)
{
    return readAndCheck(object, options, QString(), [&] { return object.LoadXml(device); });
}

ReadOutcome TryReadBinary(IMKObject& object, const QByteArray& bytes, const ReadOptions& options)
{
    return readAndCheck(object, options, QString(), [&] { return object.SetBinaryRepresentation(bytes); });
}

ReadOutcome TryLoadBinary(IMKObject& object, const QString& path, const ReadOptions& options)
{
    return readAndCheck(object, options, path, [&] { return object.LoadBinary(path); });
}

ReadOutcome TryLoadBinary(IMKObject& object, QIODevice* device, const ReadOptions& options)
{
    return readAndCheck(object, options, QString(), [&] { return object.LoadBinary(device); });
}

} // namespace MODELKIT
