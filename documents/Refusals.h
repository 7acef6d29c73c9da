// SPDX-License-Identifier: MIT
// What a record would refuse under validation, told from what it was read from without. Not installed.
#pragma once

#include "documents/Document.h"
#include "documents/DocumentError.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <vector>

namespace ROUTERDOCUMENTS {

// Whether the report has an entry for everything.
enum class Reported
{
    All,
    Some
};

// The errors in a document in XML or a binary form, in any order.
// accepted: what the report says about reading the document; what is an error is removed.
std::vector<DocumentError> takeRefusals(const QByteArray& bytes, const Document& document,
                                        QVector<MODELKIT::ReadingReport::Entry>& accepted, Reported reported);

} // namespace ROUTERDOCUMENTS
