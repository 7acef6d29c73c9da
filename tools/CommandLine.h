// SPDX-License-Identifier: MIT
/// \file
/// Running a command line.
#pragma once

#include "Arguments.h"
#include "CommonOptions.h"
#include "Program.h"
#include "Session.h"

#include <QtCore/QStringList>

namespace routermsg {

class CommandLine
{
public:
    /// \param words without the name of the program
    explicit CommandLine(const QStringList& words);

    /// The common options as given, for the session.
    CommonOptions commonOptions() const;

    /// Runs the command.
    /// \throws UsageError when the words are wrong
    /// \throws whatever the command throws
    Status run(Session& session) const;

private:
    const Command m_command;
    const Arguments m_arguments;
};

} // namespace routermsg
