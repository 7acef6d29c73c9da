// SPDX-License-Identifier: MIT
/// \file
/// Saving a document and telling the user of it.
#pragma once

#include "Session.h"
#include "documents/Forms.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <optional>

namespace routermsg {

/// "<stdout>" for "-", otherwise as it was given.
QString outputName(const QString& path);

/// Where a document goes to.
struct Target
{
    QString path;
    ROUTERDOCUMENTS::Form form = ROUTERDOCUMENTS::Form::Xml;

    /// Without \a form the ending of the path tells it; for "-" it is XML.
    /// \throws UsageError when it does not.
    Target(const QString& targetPath, const std::optional<ROUTERDOCUMENTS::Form>& targetForm);
};

/// A document that was read or written, for reports about it.
struct FileSummary
{
    QString name;
    ROUTERDOCUMENTS::Form form = ROUTERDOCUMENTS::Form::Xml;
    qint64 size = 0;
    /// Whether the form carries all that the document holds; for one that was written.
    std::optional<bool> isComplete = std::nullopt;

    /// "request.xml (xml, 371 bytes)"
    QString toText() const;
    /// The members file, form, bytes and complete.
    QJsonObject toJson() const;
};

/// The record in a form; files of that form hold the same bytes.
/// \param name how messages call what is to be written
/// \throws Refusal when the record does not pass its validation or the form cannot carry a text.
QByteArray encode(MODELKIT::IMKObject& record, ROUTERDOCUMENTS::Form form, const QString& name);

/// Writes the document to a file, which changes at once or not at all, or for "-" to standard output. What
/// could steer a terminal is escaped there by the means of the form. Warns when its form does not carry
/// everything.
///
/// \throws Refusal when the record does not pass its validation, the form cannot carry a text or the file
/// cannot be written, or for binary bytes on a terminal.
FileSummary save(MODELKIT::IMKObject& record, const Target& target, Session& session);

/// Tells of the work that ends with a saved document, as text or JSON. The report goes to standard error
/// when the document went to standard output, and is then left out unless it is wanted as JSON.
void reportSaving(const QString& text, const QJsonObject& json, const Target& target, Session& session);

} // namespace routermsg
