// SPDX-License-Identifier: MIT
/// \file
/// What is wrong with a document, and where.
#pragma once

#include "documents/DocumentError.h"

#include "modelkit/Failure.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <exception>

namespace routermsg {

class Output;

/// The exit status of a command. The worst of several is the largest.
enum Status : int
{
    Fine = 0,  ///< nothing to complain about
    Found = 1, ///< a document is not valid, or documents differ
    Failed = 2 ///< wrong usage, or a file cannot be read or written
};

/// One thing that is wrong with a document.
struct Finding
{
    enum Severity : int
    {
        Error,
        Warning
    };

    Severity severity = Error;
    /// The exit status that the finding leads to.
    Status status = Found;
    /// What is wrong, without the place, in the words of the library. It may quote the document.
    QString text;
    /// The file has the name that the user gave. A path in JSON looks like "$.DF_Params.Frequency".
    MODELKIT::Place place;
    /// Whether bytes of a recording are no message, so that there is no document to count.
    bool isNoMessage = false;
    /// What the user can do to see more, in one sentence.
    QString hint = {};

    /// \a file is used if the failure does not name its file.
    static Finding of(const MODELKIT::Failure& failure, const QString& file);
    static Finding of(const ROUTERDOCUMENTS::DocumentError& error, const QString& file);
    /// A file that cannot be read or written.
    static Finding ofFile(const QString& file, const QString& text);

    /// "file:line:column: error: text (in path)" or "file: offset N: error: text (in path)", without the
    /// unknown parts, and behind it the hint. If nothing is known about the place, the line begins with
    /// "routermsg:". The line is safe to show, and coloured if \a output has colours.
    QString toLine(const Output& output) const;
    /// The members severity, text, file, line, column, offset, path and hint, without the unknown ones.
    QJsonObject toJson() const;
};

/// Takes findings one by one.
class FindingReceiver
{
public:
    virtual ~FindingReceiver() = default;
    virtual void add(const Finding& finding) = 0;
};

/// Thrown to end the work on a document.
class Refusal : public std::exception
{
public:
    explicit Refusal(const Finding& finding) : m_finding(finding), m_utf8(finding.text.toUtf8()) {}

    const Finding& finding() const noexcept { return m_finding; }
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    Finding m_finding;
    QByteArray m_utf8;
};

/// Ends all work: results cannot be written.
class OutputRefusal : public Refusal
{
public:
    using Refusal::Refusal;
};

} // namespace routermsg
