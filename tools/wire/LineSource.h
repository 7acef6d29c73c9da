// SPDX-License-Identifier: MIT
/// \file
/// Lines that come while other things happen.
#pragma once

#include <QtCore/QString>

#include <functional>

namespace routermsg {

/// The receivers are called from inside the loop.
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
};

} // namespace routermsg
