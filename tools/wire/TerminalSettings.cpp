// SPDX-License-Identifier: MIT
#include "wire/TerminalSettings.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace routermsg {

termios TerminalSettings::s_settings = {};
struct sigaction TerminalSettings::s_before[NSIG] = {};

TerminalSettings::TerminalSettings()
{
    if (tcgetattr(STDIN_FILENO, &s_settings) != 0)
        throw std::system_error(errno, std::generic_category(), "The settings of the terminal");
    for (const int signal : endingSignals) {
        struct sigaction action = {};
        action.sa_handler = restore;
        action.sa_flags = SA_RESTART;
        // A program that was started to ignore a signal goes on ignoring it.
        if (sigaction(signal, nullptr, &s_before[signal]) == 0 && s_before[signal].sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

TerminalSettings::~TerminalSettings()
{
    for (const int signal : endingSignals) {
        struct sigaction now = {};
        // A signal that has come has its handler of before already.
        if (sigaction(signal, nullptr, &now) == 0 && now.sa_handler == restore)
            sigaction(signal, &s_before[signal], nullptr);
    }
    // A terminal that is gone needs none.
    tcsetattr(STDIN_FILENO, TCSADRAIN, &s_settings);
}

void TerminalSettings::restore(int signal)
{
    const int before = errno;
    tcsetattr(STDIN_FILENO, TCSANOW, &s_settings);
    sigaction(signal, &s_before[signal], nullptr);
    // It waits until this function has returned.
    raise(signal);
    errno = before;
}

} // namespace routermsg
