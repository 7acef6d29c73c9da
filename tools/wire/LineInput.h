// SPDX-License-Identifier: MIT
/// \file
/// The lines of standard input, while other things happen.
#pragma once

#include "wire/LineSource.h"

#include <QtCore/QByteArray>
#include <QtCore/QSocketNotifier>

namespace routermsg {

class WireLoop;

/// Reads standard input when there is something to read.
class LineInput : public LineSource
{
public:
    LineInput(WireLoop& loop, const Receivers& receivers);

    void stop() override;
    void pause() override { m_notifier.setEnabled(false); }
    void resume() override { m_notifier.setEnabled(!m_isOver); }

private:
    void read();
    void tellLines();

    QSocketNotifier m_notifier;
    const Receivers m_receivers;
    QByteArray m_pending;
    bool m_isOver = false;
};

} // namespace routermsg
