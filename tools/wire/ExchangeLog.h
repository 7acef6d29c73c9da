// SPDX-License-Identifier: MIT
/// \file
/// What commands on connections show and record.
#pragma once

#include "Arguments.h"
#include "CommandTables.h"
#include "Finding.h"
#include "Session.h"
#include "documents/Exchange.h"
#include "documents/Forms.h"
#include "wire/Recorder.h"

#include <QtCore/QString>

#include <functional>
#include <memory>
#include <optional>

namespace routermsg {

/// The option --record.
OptionTable recordOption();
/// The options of commands that show exchanges, with --record.
QVector<OptionTable> exchangeOptionRows();

/// A message in a few words: "Request 7: AcquireMastership, DF_Params".
QString summaryOf(const MODELKIT::IMKObject& record);

/// Shows exchanges, and appends them to a recording if the user wants one.
///
/// As text, an exchange is a line with the time, the peer and what happened, and behind it the content of the
/// message, except for those that the program itself has sent. With --to, only messages that have come are
/// written, and faults are complaints. As JSON, it is a line of a
/// recording.
class ExchangeLog
{
public:
    /// \throws Refusal when the recording cannot be opened.
    ExchangeLog(const Arguments& arguments, Session& session);

    /// \throws OutputRefusal when the recording cannot be written.
    void add(const ROUTERDOCUMENTS::Exchange& exchange);

    /// Found if there was a fault, except in what the program itself has sent, or a message could not be
    /// written in the form that is wanted.
    Status status() const { return m_status; }

private:
    void show(const ROUTERDOCUMENTS::Exchange& exchange);
    void showMessage(const ROUTERDOCUMENTS::Exchange& exchange);
    void writeLine(const ROUTERDOCUMENTS::Exchange& exchange);
    QString textOf(const ROUTERDOCUMENTS::Exchange& exchange) const;

    Session& m_session;
    bool m_isBrief;
    std::optional<ROUTERDOCUMENTS::Form> m_form;
    std::optional<Recorder> m_recorder;
    Status m_status = Fine;
};

/// What is wrong with an exchange, as a finding of its peer.
Finding faultOf(const ROUTERDOCUMENTS::Exchange& exchange);

/// Does the work of a command that shows exchanges. What it refuses is a finding on a line of its own.
/// \returns what \a work returns, or the status of the finding.
Status runShowing(Session& session, const std::function<Status()>& work);

/// The same for a command whose work is an object.
template <class Work>
Status runShowing(const Arguments& arguments, Session& session)
{
    return runShowing(session, [&] { return Work(arguments, session).run(); });
}

/// The recording that --record names; null without the option.
std::unique_ptr<Recorder> recorderOf(const Arguments& arguments);

} // namespace routermsg
