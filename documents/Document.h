// SPDX-License-Identifier: MIT
/// \file
/// Whole documents in any of their forms, from bytes and as bytes.
#pragma once

#include "documents/Export.h"
#include "documents/Forms.h"
#include "documents/FrameFormat.h"
#include "documents/Validation.h"

#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>

#include <memory>
#include <optional>

namespace ROUTERDOCUMENTS {

/// How to read a document.
struct ReadingOptions
{
    /// The form of the bytes. Without a value, the content determines it.
    std::optional<Form> form = std::nullopt;
    /// With Validation::On the record is also checked after it was read.
    Validation validation = Validation::Off;
    /// The bytes are exactly one bare frame in this layout; then \a form has no effect.
    std::optional<FrameFormat> frame = std::nullopt;
    /// The class that the root must have; null admits all. A frame without a class id needs it.
    const PELLU300ROUTERINTERFACEXML::RecordInfo* info = nullptr;
};

/// A document as it was read.
struct Document
{
    /// The root record; never null.
    std::unique_ptr<MODELKIT::IMKObject> record;
    /// The class of the record.
    const PELLU300ROUTERINTERFACEXML::RecordInfo* info = nullptr;
    /// The form in which it was written.
    Form form = Form::Xml;
    /// The layout of a bare frame.
    std::optional<FrameFormat> frame = std::nullopt;
    /// The number of bytes of the written form.
    qint64 size = 0;
};

/// Reads a document whose root may be any record. The limits in force apply, and a reading report collects
/// entries, as for the record's own operations.
/// \throws DocumentError, with the place in the bytes, when they are not a document, a record refuses a
/// value, or the record does not pass its check.
/// \throws std::logic_error for a frame without a class id when the options do not tell the class.
ROUTERDOCUMENTS_EXPORT Document ReadDocument(const QByteArray& bytes, const ReadingOptions& options = {});

/// The record as bytes in that form. The compressed form has zlib's default level.
/// \throws DocumentError when validation is on and the record holds no data or does not pass its check, or
/// when the form cannot represent the content.
ROUTERDOCUMENTS_EXPORT QByteArray WriteDocument(MODELKIT::IMKObject& record, Form form);

} // namespace ROUTERDOCUMENTS
