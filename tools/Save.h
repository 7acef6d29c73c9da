/// \file
/// Saving a document and telling the user of it.
#pragma once

#include "Session.h"
#include "documents/Forms.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <optional>

namespace routermsg {

/// Where a document goes to.
struct Target
{
    QString path;
    Form form = Form::Xml;

    /// Without \a form the ending of the path tells it; for "-" it is XML.
    /// \throws UsageError when it does not.
    Target(const QString& targetPath, const std::optional<Form>& targetForm);
};

/// A document that was read or written, for reports about it.
struct Copy
{
    QString name;
    Form form = Form::Xml;
    qint64 size = 0;
    /// Whether the form carries all that the document holds; for one that was written.
    std::optional<bool> isComplete = std::nullopt;

    /// "request.xml (xml, 371 bytes)"
    QString toText() const;
    /// The members file, form, bytes and complete.
    QJsonObject toJson() const;
};

/// Writes the document and warns when its form does not carry everything.
/// \throws Refusal
Copy save(MODELKIT::IMKObject& record, const Target& target, Session& session);

/// Tells of the work that ends with a saved document, as text or JSON. The report goes to standard error
/// when the document went to standard output, and is then left out unless it is wanted as JSON.
void reportSaving(const QString& text, const QJsonObject& json, const Target& target, Session& session);

} // namespace routermsg
