// SPDX-License-Identifier: MIT
/// \file
/// The exceptions of the base object library and of the records built on it.
///
/// Every failure that a record reports is one of the four leaf classes. Each can be caught as its
/// own class, as `MKException`, as `ModelKitException` and as `std::exception`.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Place.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <exception>

/// Root of the exceptions; carries the message text.
class MODELKIT_EXPORT ModelKitException : public std::exception
{
public:
    /// Takes the message text as it stands.
    explicit ModelKitException(const QString& text);
    /// Copies the text and what else the exception tells.
    ModelKitException(const ModelKitException& other) noexcept;
    /// As the copy constructor.
    ModelKitException& operator=(const ModelKitException& other) noexcept;
    ~ModelKitException() override;

    /// The message text.
    const QString& GetText() const noexcept;

    /// The message text in UTF-8; valid as long as the exception lives.
    const char* what() const noexcept override;

    /// Where it happened. Exceptions that pass through the operations that read whole documents have a
    /// place in the document; those of checking and writing have the path of the record that they are
    /// about; others have none. The place is no part of the text.
    const MODELKIT::Place& GetPlace() const noexcept;

    /// Notes where in a document it happened.
    void SetPlace(const MODELKIT::Place& place);

private:
    QString m_text;
    QByteArray m_utf8;
    MODELKIT::Place m_place;
};

/// Base of the exceptions that objects throw.
class MODELKIT_EXPORT MKException : public ModelKitException
{
public:
    /// Takes the message text as it stands.
    explicit MKException(const QString& text);
    /// Copies the text and what else the exception tells.
    MKException(const MKException& other) noexcept;
    /// As the copy constructor.
    MKException& operator=(const MKException& other) noexcept;
    ~MKException() override;
};

/// A member was given, or holds, a value outside its valid values.
class MODELKIT_EXPORT OutOfRangeException : public MKException
{
public:
    /// Takes the message text as it stands.
    explicit OutOfRangeException(const QString& text);
    /// About a value of which a text is known, and the valid one that may have been meant.
    OutOfRangeException(const QString& text, const QString& offendingValue, const QString& closest);
    /// Copies the text and what else the exception tells.
    OutOfRangeException(const OutOfRangeException& other) noexcept;
    /// As the copy constructor.
    OutOfRangeException& operator=(const OutOfRangeException& other) noexcept;
    ~OutOfRangeException() override;

    /// The value as it was read or passed, for example "Replay" or "7"; null when it has no text. It is
    /// no part of the message, may come from a document, and is as long as it was there.
    const QString& GetOffendingValue() const noexcept;

    /// The name of the enumerator that is most like the value, for example "Reply"; empty when none is
    /// like it, and when it is no enumerator that is asked for.
    const QString& GetClosest() const noexcept;

private:
    QString m_offendingValue;
    QString m_closest;
};

/// A record or a list item lacks content that it must have.
class MODELKIT_EXPORT IncompleteDefinitionException : public MKException
{
public:
    /// Takes the message text as it stands.
    explicit IncompleteDefinitionException(const QString& text);
    /// Copies the text and what else the exception tells.
    IncompleteDefinitionException(const IncompleteDefinitionException& other) noexcept;
    /// As the copy constructor.
    IncompleteDefinitionException& operator=(const IncompleteDefinitionException& other) noexcept;
    ~IncompleteDefinitionException() override;
};

/// XML input cannot give a member a value.
class MODELKIT_EXPORT InvalidXmlException : public MKException
{
public:
    /// Takes the message text as it stands.
    explicit InvalidXmlException(const QString& text);
    /// Copies the text and what else the exception tells.
    InvalidXmlException(const InvalidXmlException& other) noexcept;
    /// As the copy constructor.
    InvalidXmlException& operator=(const InvalidXmlException& other) noexcept;
    ~InvalidXmlException() override;
};

/// Binary input holds fewer or more bytes than its lengths announce.
class MODELKIT_EXPORT BinaryParsingException : public MKException
{
public:
    /// Takes the message text as it stands.
    explicit BinaryParsingException(const QString& text);
    /// Copies the text and what else the exception tells.
    BinaryParsingException(const BinaryParsingException& other) noexcept;
    /// As the copy constructor.
    BinaryParsingException& operator=(const BinaryParsingException& other) noexcept;
    ~BinaryParsingException() override;
};
