// SPDX-License-Identifier: MIT
/// \file
/// The command line: all commands and their options.
#pragma once

#include "CommandTables.h"
#include "Session.h"

#include <functional>
#include <memory>

namespace routermsg {

class CommandLine
{
public:
    using Work = std::function<Status(Session&)>;

    CommandLine();
    ~CommandLine();

    /// Understands the arguments of the program.
    /// \returns what is to be done
    /// \throws UsageError
    Work parse(int argc, const char* const* argv);

    /// As they were given.
    const CommonOptions& commonOptions() const;

    /// What the parser itself goes by.
    ProgramTable tables() const;

private:
    class Parser;

    std::unique_ptr<Parser> m_parser;
};

} // namespace routermsg
