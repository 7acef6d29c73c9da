// SPDX-License-Identifier: MIT
/// \file
/// What reading accepted silently, as findings.
#pragma once

#include "Finding.h"
#include "Messages.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QVector>

namespace routermsg {

/// Everything in the report about reading the message, as warnings. What the report has dropped is counted.
QVector<Finding> acceptedSilently(const MODELKIT::ReadingReport& report, const InputMessage& message);

/// The same, but only what the record that was read does not hold. It does hold numbers that are not finite,
/// and a fragment without payload: whether they get lost is up to the form to which they are written.
QVector<Finding> lostByReading(const MODELKIT::ReadingReport& report, const InputMessage& message);

/// The warning behind a list of warnings that was cut off.
Finding moreNotListed(qint64 count, const QString& file);

} // namespace routermsg
