// SPDX-License-Identifier: MIT
/// \file
/// Whole documents in any of their forms, from bytes and as bytes.
#pragma once

#include "documents/Export.h"
#include "documents/Forms.h"

#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>

#include <memory>
#include <optional>

namespace ROUTERDOCUMENTS {

/// How to read a document.
struct ReadingOptions
{
    /// Without one it is told by the content.
    std::optional<Form> form;
    /// Whether the record gets its validation switched on before it is read, and is checked afterwards.
    bool validate = false;
};

/// A document as it was read.
struct Document
{
    /// Never null.
    std::unique_ptr<MODELKIT::IMKObject> record;
    /// The class of the record.
    const PELLU300ROUTERINTERFACEXML::RecordInfo* info = nullptr;
    Form form = Form::Xml;
    /// The number of bytes of the written form.
    qint64 size = 0;
};

/// Reads a document whose root may be any record. The limits that are in force apply, and a reading report
/// gets its entries, as with the record's own operations.
/// \throws DocumentError when the bytes are no document, with the place in them; when a record refuses what
/// it is to hold, or does not pass its check.
ROUTERDOCUMENTS_EXPORT Document ReadDocument(const QByteArray& bytes, const ReadingOptions& options = {});

/// The record in a form. The compressed one has the usual level.
/// \throws DocumentError when validation is on and the record holds no data or does not pass, and when the
/// form cannot carry what it holds. The record is as before.
ROUTERDOCUMENTS_EXPORT QByteArray WriteDocument(MODELKIT::IMKObject& record, Form form);

} // namespace ROUTERDOCUMENTS
