// SPDX-License-Identifier: MIT
/// \file
/// The messages that a command works on, one by one.
#pragma once

#include "Arguments.h"
#include "Finding.h"
#include "InputList.h"
#include "Messages.h"
#include "WhereOption.h"
#include "documents/Document.h"

#include <QtCore/QStringList>

#include <functional>

namespace routermsg {

class Session;

/// The messages of all inputs that fit the options --message and --where. What cannot be read is complained
/// of, in a line for each problem.
class FittingMessages
{
public:
    /// \throws UsageError when the value of an option is wrong.
    FittingMessages(const Arguments& arguments, Session& session);

    const QStringList& files() const { return m_inputs.files; }

    /// Calls \a onMessage for each message while they arrive. What it writes to standard output is there at
    /// once. \returns the worst status of the problems.
    Status
    forEach(const std::function<void(const InputMessage&, const ROUTERDOCUMENTS::Document&)>& onMessage);

private:
    Session& m_session;
    MessageFilter m_filter;
    InputList m_inputs;
    Messages::Options m_options;
};

} // namespace routermsg
