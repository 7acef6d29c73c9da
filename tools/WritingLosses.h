// SPDX-License-Identifier: MIT
/// \file
/// What a written form does not carry.
#pragma once

#include "Finding.h"
#include "documents/Forms.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace routermsg {

/// Reads the written record back and compares: a warning for each member that is not the same, with both
/// values. Empty for JSON, which carries everything.
/// \param bytes the record in that form
/// \param file the name of the written file in the findings
QVector<Finding> lostByWriting(const MODELKIT::IMKObject& record, const QByteArray& bytes,
                               ROUTERDOCUMENTS::Form form, const QString& file);

} // namespace routermsg
