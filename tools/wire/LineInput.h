// SPDX-License-Identifier: MIT
/// \file
/// The lines of standard input, while other things happen.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSocketNotifier>
#include <QtCore/QString>

#include <functional>

namespace routermsg {

class WireLoop;

/// Reads standard input when there is something to read. The receivers are called from inside the loop.
class LineInput
{
public:
    LineInput(WireLoop& loop, const std::function<void(const QString&)>& onLine,
              const std::function<void()>& onEnd);
    LineInput(const LineInput&) = delete;
    LineInput& operator=(const LineInput&) = delete;

    /// Reads nothing more.
    void stop();

private:
    void read();
    void tellLines();

    QSocketNotifier m_notifier;
    const std::function<void(const QString&)> m_onLine;
    const std::function<void()> m_onEnd;
    QByteArray m_pending;
    bool m_isOver = false;
};

} // namespace routermsg
