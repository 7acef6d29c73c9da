// SPDX-License-Identifier: MIT
// Values quoted in messages. Not installed.
#pragma once

#include <QtCore/QString>

namespace MODELKIT {

// The text in quotation marks; a long text is truncated.
inline QString quoted(const QString& text)
{
    constexpr int shown = 40;
    return QLatin1Char('"') + (text.size() > shown ? text.left(shown) + QLatin1String("...") : text)
           + QLatin1Char('"');
}

} // namespace MODELKIT
