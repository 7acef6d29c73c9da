// SPDX-License-Identifier: MIT
/// \file
/// Saving documents.
#pragma once

#include "DirectOutput.h"
#include "SavingReport.h"
#include "Session.h"
#include "documents/Forms.h"
#include "documents/Recording.h"

#include "modelkit/IMKObject.h"
#include "modelkit/ReplaceFile.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <optional>

namespace routermsg {

/// The name of a file in messages: "<stdout>" for "-", otherwise as given.
QString outputName(const QString& path);

/// Whether the input, which is standard input for "-", and the path lead to the same file, which exists.
bool isSameFile(const QString& input, const QString& path);

/// Where a document is written to, and in which form.
struct Target
{
    QString path;
    ROUTERDOCUMENTS::Form form = ROUTERDOCUMENTS::Form::Xml;
    /// Whether a file is replaced as a whole. Otherwise the bytes go to standard output, a pipe or a device
    /// while they are made.
    bool isFile = true;
    /// Whether the folders of the file are made when it is written.
    bool makesFolders = false;

    /// Names of standard output, such as /dev/stdout, become "-". Without \a targetForm the ending of the
    /// path tells the form; "-" means XML. \throws UsageError when the ending does not tell it.
    Target(const QString& targetPath, const std::optional<ROUTERDOCUMENTS::Form>& targetForm);
};

/// A document that was read or written, for reports about it.
struct FileSummary
{
    QString name;
    ROUTERDOCUMENTS::Form form = ROUTERDOCUMENTS::Form::Xml;
    qint64 size = 0;
    /// Whether the form carries everything in the document; only for one that was written.
    std::optional<bool> isComplete = std::nullopt;
    /// Of a recording: how many messages it has, and whether they are of several forms.
    /// @{
    qint64 messages = 1;
    bool isMixed = false;
    /// @}
    /// How many of its messages were left out on purpose.
    std::optional<qint64> leftOut = std::nullopt;

    /// The name of the form, or "mixed".
    QString formName() const;

    /// "request.xml (xml, 371 bytes)"
    QString toText() const;
    /// The members file, form, bytes, messages, complete and leftOut, if they are known.
    QJsonObject toJson() const;
};

/// The record in a form, as it is written to a file.
/// \param name the name of the file in messages
/// \throws Refusal when the record does not pass its validation or the form cannot carry a text.
QByteArray encode(MODELKIT::IMKObject& record, ROUTERDOCUMENTS::Form form, const QString& name);

/// Writes messages one behind another to a file, which is replaced as a whole or not at all, or directly to
/// standard output, a pipe or a device. On a terminal, control characters are written as escapes of the form.
class MessageWriter
{
public:
    /// \param session is used for standard output only
    MessageWriter(const Target& target, Session& session, FindingReceiver& report);
    MessageWriter(const MessageWriter&) = delete;
    MessageWriter& operator=(const MessageWriter&) = delete;
    ~MessageWriter();

    /// Appends a message. Reports what the form does not carry.
    /// \throws Refusal when the record does not pass its validation, the form cannot carry a text, or for
    /// binary bytes on a terminal.
    void add(MODELKIT::IMKObject& record);
    /// Appends the bytes of a message that has the form already.
    /// \throws Refusal when they cannot be written.
    void copy(const QByteArray& bytes);
    /// Appends a message of any form as it stands, and the bytes behind it.
    /// \throws Refusal when they cannot be written.
    void copy(const ROUTERDOCUMENTS::RecordedMessage& message, const QByteArray& behind);
    /// Whether the form carries everything in the messages so far.
    bool isComplete() const { return *m_summary.isComplete; }
    /// Replaces the file or closes the output, unless no message was added.
    /// \throws Refusal when it cannot be written.
    FileSummary finish();

private:
    void append(const QByteArray& bytes);
    void write(const QByteArray& bytes);
    void writeDirectly(const QByteArray& bytes);
    void writeToFile(const QByteArray& bytes);

    Target m_target;
    Session& m_session;
    FindingReceiver& m_report;
    FileSummary m_summary;
    MODELKIT::FileReplacement m_file;
    std::optional<DirectOutput> m_direct;
    // Whether the last message has not ended its line.
    bool m_isInLine = false;
};

} // namespace routermsg
