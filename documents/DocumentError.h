// SPDX-License-Identifier: MIT
/// \file
/// The exceptions of the document library.
#pragma once

#include "documents/Export.h"
#include "documents/Forms.h"

#include "modelkit/Exceptions.h"
#include "modelkit/Failure.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <exception>
#include <optional>

namespace ROUTERDOCUMENTS {

/// A document cannot be read or written, or breaks a rule of its records.
class ROUTERDOCUMENTS_EXPORT DocumentError : public std::exception
{
public:
    /// Has the kind, text and place of the failure.
    /// \param otherForm see GetOtherForm()
    explicit DocumentError(const MODELKIT::Failure& failure, std::optional<Form> otherForm = std::nullopt);
    /// Has the text and place of a record's exception, and the kind Failure::Refused. For a value that is no
    /// enumerator, the text also names the value, and the enumerator that may have been meant or else all
    /// enumerators.
    explicit DocumentError(const ModelKitException& refusal);
    /// Copies the error.
    DocumentError(const DocumentError& other) noexcept;
    /// Copies the error.
    DocumentError& operator=(const DocumentError& other) noexcept;
    /// Releases the texts.
    ~DocumentError() override;

    /// The kind of failure. JSON has its own meanings of some kinds: NotWellFormed for a text that is not
    /// JSON or repeats a key in an object, TooManyItems for a list above the limit, InputTooLarge for a text
    /// above the limit, and Refused for everything else.
    MODELKIT::Failure::Kind GetKind() const noexcept { return m_failure.kind; }
    /// What is wrong, in one or two sentences without the place. It may contain text from the document:
    /// Printable() makes it safe to display.
    const QString& GetText() const noexcept { return m_failure.text; }
    /// Where it is, as far as that is known; without the file. For JSON the path looks like
    /// "$.DF_Params.Frequency", and items count from 0.
    const MODELKIT::Place& GetPlace() const noexcept { return m_failure.place; }

    /// Whether a binary form does not have the bytes that its lengths announce, or cannot be inflated. Then
    /// its parts tell more than the text; see Dissection.h.
    bool IsAboutParts() const noexcept { return m_isAboutParts; }

    /// Of a place in a recording where a message of another form begins than the one that was asked for: that
    /// form.
    std::optional<Form> GetOtherForm() const noexcept { return m_otherForm; }

    /// The text in UTF-8.
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    MODELKIT::Failure m_failure;
    std::optional<Form> m_otherForm;
    bool m_isAboutParts = false;
    QByteArray m_utf8;
};

/// A path names a member that no record has, or its syntax is wrong.
class ROUTERDOCUMENTS_EXPORT InvalidMemberPath : public std::exception
{
public:
    /// Takes the text unchanged.
    explicit InvalidMemberPath(const QString& text);
    /// Copies the error.
    InvalidMemberPath(const InvalidMemberPath& other) noexcept;
    /// Copies the error.
    InvalidMemberPath& operator=(const InvalidMemberPath& other) noexcept;
    /// Releases the text.
    ~InvalidMemberPath() override;

    /// What is wrong and what may have been meant, safe to display.
    const QString& GetText() const noexcept { return m_text; }
    /// The text in UTF-8.
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_text;
    QByteArray m_utf8;
};

} // namespace ROUTERDOCUMENTS
