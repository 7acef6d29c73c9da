// SPDX-License-Identifier: MIT
/// \file
/// Reading whole documents without exceptions: functions that return everything that there is to know.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Failure.h"
#include "modelkit/IMKObject.h"
#include "modelkit/Limits.h"
#include "modelkit/ReadingReport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

class QIODevice;

namespace MODELKIT {

/// How to read a whole document.
struct ReadOptions
{
    /// Switches validation on in the object before it is read, so that bad values are refused. It stays on.
    /// Without this option the object's flag stays as it is.
    bool validate = false;
    /// Applies `Check()` to what was read.
    bool check = false;
    /// The limits of this operation; without a value those in force.
    std::optional<Limits> limits = std::nullopt;
    /// Collects what reading accepts silently.
    bool report = false;
};

/// How reading a whole document has ended. It is true when the document was read completely.
struct MODELKIT_EXPORT ReadOutcome
{
    /// Why reading failed; of kind Failure::None when it succeeded. Of kind Failure::Refused when a record
    /// refused a value or did not pass its check, and Failure::Interrupted when a device, a log sink, a
    /// derived class or the allocator threw an exception.
    Failure failure;
    /// What was accepted silently, if ReadOptions::report asked for it.
    QVector<ReadingReport::Entry> entries;
    /// The number of further entries, which were not kept.
    qint64 dropped = 0;
    /// Whether there was a report.
    bool isReported = false;

    /// Whether reading succeeded.
    explicit operator bool() const { return failure.kind == Failure::None; }

    /// Whether the report promises that nothing was lost; see ReadingReport. False without a report.
    bool HasLostNothing() const;
};

/// \name Reading without exceptions
///
/// Each function does to the object what the operation of IMKObject does that it names, and catches every
/// exception that is a `std::exception`. Failures are logged as usual. After a failure the object holds what
/// was read before. An outer ReadingReport also gets the entries. Only when the memory does not suffice for
/// the outcome, `std::bad_alloc` is passed on.
/// @{

/// Reads \a xml into \a object with the \a options, as IMKObject::SetXmlBytes().
[[nodiscard]] MODELKIT_EXPORT ReadOutcome TryReadXml(IMKObject& object, const QByteArray& xml,
                                                     const ReadOptions& options = {});
/// Reads \a xml into \a object with the \a options, as IMKObject::SetXmlString().
[[nodiscard]] MODELKIT_EXPORT ReadOutcome TryReadXmlString(IMKObject& object, const QString& xml,
                                                           const ReadOptions& options = {});
/// Reads the file at \a path into \a object with the \a options, as IMKObject::LoadXml(). When the check
/// fails, the failure has no line, but the path of the record.
[[nodiscard]] MODELKIT_EXPORT ReadOutcome TryLoadXml(IMKObject& object, const QString& path,
                                                     const ReadOptions& options = {});
/// As above: reads any \a device into \a object with the \a options.
[[nodiscard]] MODELKIT_EXPORT ReadOutcome TryLoadXml(IMKObject& object, QIODevice* device,
                                                     const ReadOptions& options = {});
/// Reads \a bytes into \a object with the \a options, as IMKObject::SetBinaryRepresentation().
[[nodiscard]] MODELKIT_EXPORT ReadOutcome TryReadBinary(IMKObject& object, const QByteArray& bytes,
                                                        const ReadOptions& options = {});
/// Reads the file at \a path into \a object with the \a options, as IMKObject::LoadBinary().
[[nodiscard]] MODELKIT_EXPORT ReadOutcome TryLoadBinary(IMKObject& object, const QString& path,
                                                        const ReadOptions& options = {});
/// As above: reads any \a device into \a object with the \a options.
[[nodiscard]] MODELKIT_EXPORT ReadOutcome TryLoadBinary(IMKObject& object, QIODevice* device,
                                                        const ReadOptions& options = {});
/// @}

} // namespace MODELKIT
