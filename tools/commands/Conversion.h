// SPDX-License-Identifier: MIT
/// \file
/// Reading messages and writing them in another form.
#pragma once

#include "Arguments.h"
#include "CommandTables.h"
#include "Messages.h"
#include "Saving.h"
#include "WhereOption.h"
#include "documents/Document.h"
#include "documents/Forms.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>
#include <optional>

namespace routermsg {

class Progress;

/// \name Options of commands that convert
/// @{
OptionTable invalidOption();
/// \param otherwise what happens without the option, in one sentence
OptionTable acceptLossOption(const QString& otherwise);
/// The form that --to names or the ending of the path tells; none if neither does.
std::optional<ROUTERDOCUMENTS::Form> formToWrite(const Arguments& arguments, const QString& path);
/// @}

/// That no message of the input fits, or none of several inputs when \a name is empty.
Finding nothingFits(const QString& name);

/// Whether messages are copied byte for byte. Then nothing can get lost, and they need not be valid, but it
/// must be possible to read them: what follows a message that was cut off could be taken for its content.
enum class Copies
{
    None,
    All
};

/// A message that is written in another form, or copied.
struct ConvertedMessage
{
    const InputMessage& input;
    const ROUTERDOCUMENTS::Document& document;
    /// Whether the document holds everything that the message does.
    bool isComplete;
};

/// What commands share that read messages and write them in another form: which messages they take, what gets
/// lost, and when a file must stay as it is. The options --message, --where, --from, --invalid and
/// --accept-loss determine it.
class Conversion
{
public:
    /// \throws UsageError when the value of an option is wrong.
    Conversion(const Arguments& arguments, FindingReceiver& report, Progress& progress,
               Copies copies = Copies::None);

    /// Calls \a write for each message of the input that fits. Reports those that cannot be read or written,
    /// and what reading the others loses.
    /// \throws OutputRefusal when \a write does.
    void read(const QString& path, const std::function<void(const ConvertedMessage&)>& write);
    /// Reports a problem that does not end the work.
    void addProblem(const Finding& finding);
    /// What was read and written, for each input.
    const QVector<FileSummary>& inputs() const { return m_inputs; }
    bool hasMessages() const;

    /// Reports that no message fits, unless a problem that was reported explains it.
    void reportNothing();
    /// Ends the file into which all messages were written. It is not replaced by less than it may hold now;
    /// the report then says so.
    std::optional<FileSummary> finish(MessageWriter& writer, const Target& target);
    /// Ends a file that has some of the messages, and is no input.
    FileSummary finish(MessageWriter& writer);

    /// Whether every message was read, and nothing in it was lost.
    bool isComplete() const { return m_worst == Fine && !m_isLossy; }
    /// The exit status of the command.
    Status status() const;

private:
    void take(const InputMessage& message, const std::function<void(const ConvertedMessage&)>& write,
              FileSummary& input);
    QString reasonNotToWrite(const Target& target) const;

    FindingReceiver& m_report;
    Progress& m_progress;
    const Messages::Options m_options;
    const Copies m_copies;
    const ROUTERDOCUMENTS::Validation m_validation;
    const bool m_isLossAccepted;
    MessageFilter m_filter;
    QStringList m_paths;
    QVector<FileSummary> m_inputs;
    Status m_worst = Fine;
    bool m_isLossy = false;
};

} // namespace routermsg
