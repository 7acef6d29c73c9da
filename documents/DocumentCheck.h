// SPDX-License-Identifier: MIT
/// \file
/// Everything that is wrong with a document, not only what is found first.
#pragma once

#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/Export.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <optional>
#include <vector>

namespace ROUTERDOCUMENTS {

/// How to check a document.
struct CheckingOptions
{
    /// The form of the bytes. Without a value, the content determines it.
    std::optional<Form> form;
    /// How many errors to list; 0 lists all, but of a JSON document not more than mostErrorsOfJson.
    int maximalErrors = 20;
    /// The layout of a bare frame; see ReadingOptions.
    std::optional<FrameFormat> frame = std::nullopt;
    /// The class that the root must have; see ReadingOptions.
    const PELLU300ROUTERINTERFACEXML::RecordInfo* info = nullptr;
    /// The others of a JSON document are only counted, because it may hold millions.
    static constexpr int mostErrorsOfJson = MODELKIT::ReadingReport::maximalEntries;
};

/// What CheckDocument() has found.
struct CheckedDocument
{
    /// The document as it was read, valid or not. Its record is null when it cannot be read even without
    /// validation.
    Document document;
    /// What is wrong, in the order of the document; empty for a valid one.
    std::vector<DocumentError> errors;
    /// How many more errors there are, beyond CheckingOptions::maximalErrors.
    qint64 unlistedErrors = 0;
    /// What is accepted silently, as in a reading report; without what is an error.
    QVector<MODELKIT::ReadingReport::Entry> accepted;
    /// How many notices the reading report has dropped. Then errors may be missing, too.
    qint64 dropped = 0;
};

/// Reads a document as ReadDocument() does with validation. What a record refuses does not end the work: the
/// document is read again to find all that is refused. In JSON this includes all that only JSON refuses, such
/// as unknown and repeated keys; what is wrong is passed over. Bytes that cannot be read at all, such as XML
/// and JSON that are not well-formed or a binary form with a wrong length, end it, because what follows them
/// has no reliable meaning. What is refused in a text in front of that place is listed before it.
///
/// \param bytes the document
/// \param options its form, and how much is listed
///
/// The limits in force apply, and std::logic_error is thrown as by ReadDocument(). Reading reports of the
/// caller get no entries.
ROUTERDOCUMENTS_EXPORT CheckedDocument CheckDocument(const QByteArray& bytes,
                                                     const CheckingOptions& options = {});

} // namespace ROUTERDOCUMENTS
