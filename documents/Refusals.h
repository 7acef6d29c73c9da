// SPDX-License-Identifier: MIT
// What a record would refuse under validation, told from what it was read from without. Not installed.
#pragma once

#include "documents/Document.h"
#include "documents/DocumentError.h"

#include "modelkit/ReadingReport.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <optional>
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

// What a record says when its mandatory member is missing.
std::optional<DocumentError> missingRefusal(const PELLU300ROUTERINTERFACEXML::RecordInfo& record,
                                            const PELLU300ROUTERINTERFACEXML::MemberInfo& member,
                                            const MODELKIT::Place& place);

} // namespace ROUTERDOCUMENTS
