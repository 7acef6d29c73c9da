// SPDX-License-Identifier: MIT
/// \file
/// What reading accepted silently, as findings.
#pragma once

#include "Finding.h"
#include "Messages.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QVector>

namespace routermsg {

/// What reading the message accepted silently, as a warning.
Finding acceptedSilently(const MODELKIT::ReadingReport::Entry& entry, const InputMessage& message);

/// What the report says that the record, which was read from the message, does not hold. It does hold all
/// digits of a `double`, numbers that are not finite, and that a member or a payload is missing: whether that
/// gets lost is up to the form to which it is written. What the report has dropped is counted.
QVector<Finding> lostByReading(const MODELKIT::ReadingReport& report, const InputMessage& message);

/// The warning behind a list of warnings that was cut off.
Finding moreNotListed(qint64 count, const QString& file);

} // namespace routermsg
