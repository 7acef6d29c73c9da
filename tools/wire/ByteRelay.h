// SPDX-License-Identifier: MIT
/// \file
/// Passing bytes between two connections.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSocketNotifier>
#include <QtCore/QString>

#include <functional>
#include <memory>

namespace routermsg {

/// One of two connected sockets, with its descriptor, which it owns.
class WireEnd
{
public:
    /// \throws std::system_error when the descriptor cannot be used, which is closed then.
    explicit WireEnd(int descriptor);
    WireEnd(const WireEnd&) = delete;
    WireEnd& operator=(const WireEnd&) = delete;
    ~WireEnd();

    int descriptor() const { return m_descriptor; }
    QSocketNotifier& readable() { return m_readable; }
    QSocketNotifier& writable() { return m_writable; }

    /// Nothing is told any more.
    void stop();
    /// Ends the connection, when this is destroyed, so that the other end sees a failure.
    void resetAtEnd();

private:
    int m_descriptor;
    QSocketNotifier m_readable;
    QSocketNotifier m_writable;
};

/// Passes the bytes of one direction on unchanged. It reads only when everything before has been taken, so
/// that it never holds more than one block. When its source ends, it ends its target in this direction only.
class BytePump
{
public:
    struct Receivers
    {
        /// These bytes have come, and the target has been given as many of them as it takes at once.
        std::function<void(const QByteArray&)> onBytes;
        /// The source has ended, and the target has everything.
        std::function<void()> onEnd;
        /// The source or the target has failed.
        std::function<void(const QString& fault, bool isSource)> onFault;
    };

    BytePump(WireEnd& source, WireEnd& target, const Receivers& receivers);
    BytePump(const BytePump&) = delete;
    BytePump& operator=(const BytePump&) = delete;

    bool isOver() const { return m_isOver; }

private:
    void read();
    void write();
    // Returns the error of the target, or 0.
    int passOn();
    void continueAfter(int writeError);
    void finish();
    void fail(int error, bool isSource);

    WireEnd& m_source;
    WireEnd& m_target;
    const Receivers m_receivers;
    QByteArray m_block;
    // How much of the block the target has taken.
    qsizetype m_taken = 0;
    bool m_isOver = false;
};

} // namespace routermsg
