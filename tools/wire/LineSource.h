// SPDX-License-Identifier: MIT
/// \file
/// Lines that come while other things happen.
#pragma once

#include "modelkit/Utf8.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <functional>

namespace routermsg {

/// A line that is not UTF-8 is told as a null text. The receivers are called from inside the loop.
class LineSource
{
public:
    struct Receivers
    {
        std::function<void(const QString& line)> onLine;
        std::function<void()> onEnd;
    };

    LineSource() = default;
    LineSource(const LineSource&) = delete;
    LineSource& operator=(const LineSource&) = delete;
    virtual ~LineSource() = default;

    /// Reads nothing more.
    virtual void stop() = 0;
    /// Reads nothing until resume(). Lines that were read already may still come.
    virtual void pause() = 0;
    virtual void resume() = 0;
};

/// The text of a line; null when it is not UTF-8.
inline QString textOfLine(const QByteArray& line)
{
    if (MODELKIT::wellFormedUtf8(line.constData(), line.size()) != line.size())
        return {};
    return line.isEmpty() ? QStringLiteral("") : QString::fromUtf8(line);
}

} // namespace routermsg
