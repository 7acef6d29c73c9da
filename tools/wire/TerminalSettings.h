// SPDX-License-Identifier: MIT
/// \file
/// Terminals that get their settings back.
#pragma once

#include <csignal>
#include <termios.h>

namespace routermsg {

/// Keeps the settings of the terminal at standard input, and restores them when it ends or when a signal ends
/// the program. The signal goes on to the handler that was there before. There can be one at a time.
class TerminalSettings
{
public:
    TerminalSettings();
    TerminalSettings(const TerminalSettings&) = delete;
    TerminalSettings& operator=(const TerminalSettings&) = delete;
    ~TerminalSettings();

private:
    static constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE};

    static void restore(int signal);

    static termios s_settings;
    static struct sigaction s_before[NSIG];
};

} // namespace routermsg
