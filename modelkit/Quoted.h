// SPDX-License-Identifier: MIT
// Values quoted in messages. Not installed.
#pragma once

#include <QtCore/QString>

namespace MODELKIT {

// The text, truncated when it is too long for a message.
inline QString abbreviated(const QString& text)
{
    constexpr int shown = 40;
    return text.size() > shown ? text.left(shown) + QLatin1String("...") : text;
}

// The abbreviated text in quotation marks. Nothing in it is escaped.
inline QString abbreviatedInQuotes(const QString& text)
{
    return QLatin1Char('"') + abbreviated(text) + QLatin1Char('"');
}

} // namespace MODELKIT
