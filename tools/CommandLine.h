// SPDX-License-Identifier: MIT
/// \file
/// From the words of a command line to the work.
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

    /// As they were given; for the session.
    CommonOptions commonOptions() const;

    /// Does what the words say.
    /// \throws UsageError when they make no sense
    /// \throws whatever the command throws
    Status run(Session& session) const;

private:
    const QStringList m_words;
    // Both or none.
    std::optional<Command> m_command;
    std::optional<Arguments> m_arguments;
};

} // namespace routermsg
