// SPDX-License-Identifier: MIT
/// \file
/// The written forms of documents, and how to tell them apart.
#pragma once

#include "documents/Export.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace ROUTERDOCUMENTS {

/// The written forms of a document.
enum class Form
{
    Xml,        ///< in any accepted encoding
    Binary,     ///< the plain whole-object form
    Compressed, ///< the compressed whole-object form
    Json,       ///< see JsonForm.h
    JsonLines   ///< JSON on one line
};

/// The names of the forms, in the order of the enumeration.
ROUTERDOCUMENTS_EXPORT const QStringList& FormNames();
/// The name of a form: "xml", "binary", "compressed", "json", "jsonl".
ROUTERDOCUMENTS_EXPORT QString NameOf(Form form);
/// Whether it is a binary form, plain or compressed; the other forms are texts.
ROUTERDOCUMENTS_EXPORT bool IsBinary(Form form);
/// The form with that name, if there is one.
ROUTERDOCUMENTS_EXPORT std::optional<Form> FormByName(const QString& name);
/// The form that the file name's extension stands for, in any case; nothing for an unknown extension.
ROUTERDOCUMENTS_EXPORT std::optional<Form> FormOfFileName(const QString& path);
/// The file name extension of a form: ".xml".
ROUTERDOCUMENTS_EXPORT QString EndingOf(Form form);
/// The known file name extensions as a text for users: ".xml, .bin, .binz, .json, .jsonl".
ROUTERDOCUMENTS_EXPORT QString KnownEndings();
/// The form that the beginning of the bytes looks like most. It does not tell whether they can be read. JSON
/// is Form::Json, also on one line.
ROUTERDOCUMENTS_EXPORT Form FormOfContent(const QByteArray& bytes);
/// The class of the plain binary form that begins with these bytes; null when no class has their id.
ROUTERDOCUMENTS_EXPORT const PELLU300ROUTERINTERFACEXML::RecordInfo* ClassOfBinary(const QByteArray& bytes);

} // namespace ROUTERDOCUMENTS
