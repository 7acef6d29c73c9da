// SPDX-License-Identifier: MIT
/// \file
/// Running a command line.
#pragma once

#include "Arguments.h"
#include "CommonOptions.h"
#include "Program.h"
#include "Session.h"

#include <QtCore/QStringList>

#include <optional>

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
    const QStringList m_words;
    // Both are set, or none.
    std::optional<Command> m_command;
    std::optional<Arguments> m_arguments;
};

} // namespace routermsg
