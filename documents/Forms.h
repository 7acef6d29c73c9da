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
    Xml,        ///< in any encoding that is decoded
    Binary,     ///< the plain whole-object form
    Compressed, ///< the same, deflated
    Json        ///< see JsonForm.h
};

/// The names of the forms, in the order of the enumeration.
ROUTERDOCUMENTS_EXPORT const QStringList& FormNames();
/// The name of a form: "xml", "binary", "compressed", "json".
ROUTERDOCUMENTS_EXPORT QString NameOf(Form form);
/// The form of that name, if there is one.
ROUTERDOCUMENTS_EXPORT std::optional<Form> FormByName(const QString& name);
/// The form that the ending of a file's name stands for.
ROUTERDOCUMENTS_EXPORT std::optional<Form> FormOfFileName(const QString& path);
/// The endings of file names as the user is told of them: ".xml, .bin, .binz, .json".
ROUTERDOCUMENTS_EXPORT QString KnownEndings();
/// What the bytes are, or are most like. Nothing but their beginning is looked at: whether they can be read
/// is another question.
ROUTERDOCUMENTS_EXPORT Form FormOfContent(const QByteArray& bytes);
/// The class whose whole-object binary form the bytes begin as; null when it is none.
ROUTERDOCUMENTS_EXPORT const PELLU300ROUTERINTERFACEXML::RecordInfo* ClassOfBinary(const QByteArray& bytes);

} // namespace ROUTERDOCUMENTS
