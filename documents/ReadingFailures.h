// SPDX-License-Identifier: MIT
// Failures of reading, told so that they help the writer of the document. Not installed.
#pragma once

#include "documents/Export.h"
#include "documents/Forms.h"

#include "modelkit/Failure.h"

#include <QtCore/QByteArray>

namespace ROUTERDOCUMENTS {

// Throws a DocumentError for bytes that are in none of the forms.
// similar: the form that they look like most.
void requireForm(const QByteArray& bytes, Form similar);

// The failure of reading XML, with what the reader does not tell: which record a root may mean, and which
// character XML does not have.
ROUTERDOCUMENTS_EXPORT MODELKIT::Failure explainedForXml(MODELKIT::Failure failure, const QByteArray& xml);

} // namespace ROUTERDOCUMENTS
