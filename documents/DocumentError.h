// SPDX-License-Identifier: MIT
/// \file
/// The exceptions of the document library.
#pragma once

#include "documents/Export.h"

#include "modelkit/Exceptions.h"
#include "modelkit/Failure.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <exception>

namespace ROUTERDOCUMENTS {

/// A document cannot be read or written, or breaks a rule of its records.
class ROUTERDOCUMENTS_EXPORT DocumentError : public std::exception
{
public:
    /// Says what a failed operation on a whole document says.
    explicit DocumentError(const MODELKIT::Failure& failure);
    /// Says what a record's exception says. Of a value that is no enumerator it also tells the value and what
    /// may have been meant. The kind is Failure::Refused.
    explicit DocumentError(const ModelKitException& refusal);
    DocumentError(const DocumentError& other) noexcept;
    DocumentError& operator=(const DocumentError& other) noexcept;
    ~DocumentError() override;

    /// Of JSON NotWellFormed stands for what is no JSON or has a key twice, TooManyItems for a list beyond
    /// the limit, NotRepresentable for a number that it cannot carry, and Refused for everything else.
    MODELKIT::Failure::Kind GetKind() const noexcept { return m_failure.kind; }
    /// What is wrong, in one sentence or two without the place. It may hold text from the document:
    /// Printable() makes it safe to be shown.
    const QString& GetText() const noexcept { return m_failure.text; }
    /// Where it is, as far as that is known; the file is not. For JSON the path is one such as
    /// "$.DF_Params.Frequency", in which items count from 0.
    const MODELKIT::Place& GetPlace() const noexcept { return m_failure.place; }

    /// The text in UTF-8.
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    MODELKIT::Failure m_failure;
    QByteArray m_utf8;
};

/// A path names a member that no record has, or is not understood.
class ROUTERDOCUMENTS_EXPORT InvalidMemberPath : public std::exception
{
public:
    explicit InvalidMemberPath(const QString& text);
    InvalidMemberPath(const InvalidMemberPath& other) noexcept;
    InvalidMemberPath& operator=(const InvalidMemberPath& other) noexcept;
    ~InvalidMemberPath() override;

    /// Sentences that say what is wrong and what may have been meant, safe to be shown.
    const QString& GetText() const noexcept { return m_text; }
    /// The text in UTF-8.
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_text;
    QByteArray m_utf8;
};

} // namespace ROUTERDOCUMENTS
