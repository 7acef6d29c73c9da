// SPDX-License-Identifier: MIT
/// \file
/// Writing files without being interrupted by signals.
#pragma once

#include <csignal>
#include <thread>

namespace routermsg {

/// Holds back the signals that end the program, so that they do not interrupt the writing of a file.
class Uninterrupted
{
public:
    Uninterrupted();
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;
    ~Uninterrupted();

private:
    sigset_t m_before{};
};

/// Lets signals end the program only while no thread is Uninterrupted. A program with one thread does not
/// need it. Threads that are started during its lifetime leave the signals to it.
class SignalWatch
{
public:
    SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;
    ~SignalWatch();

private:
    static void watch();

    sigset_t m_before{};
    std::thread m_thread;
};

} // namespace routermsg
