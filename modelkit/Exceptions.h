// SPDX-License-Identifier: MIT
/// \file
/// The exceptions of the base object library and of the records built on it.
///
/// Every exception that a record throws is of one of the four leaf classes. It can be caught as that class,
/// as `MKException`, as `ModelKitException` or as `std::exception`.
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
    /// Takes the message text unchanged.
    explicit ModelKitException(const QString& text);
    /// Copies the exception with all that it holds.
    ModelKitException(const ModelKitException& other) noexcept;
    /// Copies like the copy constructor.
    ModelKitException& operator=(const ModelKitException& other) noexcept;
    /// Releases the texts.
    ~ModelKitException() override;

    /// The message text.
    const QString& GetText() const noexcept;

    /// The message text in UTF-8; valid as long as the exception lives.
    const char* what() const noexcept override;

    /// Where it happened. An exception from an operation that reads a whole document has a place in the
    /// document. One from checking or writing has the path of the record that it is about. Others have an
    /// empty place. The text does not include the place.
    const MODELKIT::Place& GetPlace() const noexcept;

    /// Sets where in a document it happened.
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
    /// Takes the message text unchanged.
    explicit MKException(const QString& text);
    /// Copies the exception with all that it holds.
    MKException(const MKException& other) noexcept;
    /// Copies like the copy constructor.
    MKException& operator=(const MKException& other) noexcept;
    /// Releases the texts.
    ~MKException() override;
};

/// A member was given, or holds, a value outside its valid values.
class MODELKIT_EXPORT OutOfRangeException : public MKException
{
public:
    /// Takes the message text unchanged.
    explicit OutOfRangeException(const QString& text);
    /// Takes the texts unchanged.
    /// \param text the message
    /// \param offendingValue the text of the value, for GetOffendingValue(); may be null
    /// \param closest the enumerator that may have been meant, for GetClosest(); may be empty
    OutOfRangeException(const QString& text, const QString& offendingValue, const QString& closest);
    /// Copies the exception with all that it holds.
    OutOfRangeException(const OutOfRangeException& other) noexcept;
    /// Copies like the copy constructor.
    OutOfRangeException& operator=(const OutOfRangeException& other) noexcept;
    /// Releases the texts.
    ~OutOfRangeException() override;

    /// The value as it was read or passed, for example "Replay" or "7"; null when it has no text. The message
    /// does not include it. It may come from a document and may be long.
    const QString& GetOffendingValue() const noexcept;

    /// The name of the enumerator that is most like the value, for example "Reply"; empty when none is
    /// like it, or when the member is no enumeration.
    const QString& GetClosest() const noexcept;

private:
    QString m_offendingValue;
    QString m_closest;
};

/// A record or a list item lacks content that it must have.
class MODELKIT_EXPORT IncompleteDefinitionException : public MKException
{
public:
    /// Takes the message text unchanged.
    explicit IncompleteDefinitionException(const QString& text);
    /// Copies the exception with all that it holds.
    IncompleteDefinitionException(const IncompleteDefinitionException& other) noexcept;
    /// Copies like the copy constructor.
    IncompleteDefinitionException& operator=(const IncompleteDefinitionException& other) noexcept;
    /// Releases the texts.
    ~IncompleteDefinitionException() override;
};

/// XML input holds no valid value for a member.
class MODELKIT_EXPORT InvalidXmlException : public MKException
{
public:
    /// Takes the message text unchanged.
    explicit InvalidXmlException(const QString& text);
    /// Copies the exception with all that it holds.
    InvalidXmlException(const InvalidXmlException& other) noexcept;
    /// Copies like the copy constructor.
    InvalidXmlException& operator=(const InvalidXmlException& other) noexcept;
    /// Releases the texts.
    ~InvalidXmlException() override;
};

/// Binary input holds fewer or more bytes than its lengths announce.
class MODELKIT_EXPORT BinaryParsingException : public MKException
{
public:
    /// Takes the message text unchanged.
    explicit BinaryParsingException(const QString& text);
    /// Copies the exception with all that it holds.
    BinaryParsingException(const BinaryParsingException& other) noexcept;
    /// Copies like the copy constructor.
    BinaryParsingException& operator=(const BinaryParsingException& other) noexcept;
    /// Releases the texts.
    ~BinaryParsingException() override;
};
