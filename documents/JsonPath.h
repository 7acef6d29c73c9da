// SPDX-License-Identifier: MIT
// The path to a value in a JSON text. Not installed.
#pragma once

#include "documents/Text.h"

#include <QtCore/QString>

#include <algorithm>

namespace ROUTERDOCUMENTS {

// The path to a value. Its text is made only when it is asked for.
class JsonPath
{
public:
    JsonPath() = default;
    JsonPath(const JsonPath& outer, const QString& name) : m_outer(&outer), m_name(name) {}
    JsonPath(const JsonPath& outer, int index) : m_outer(&outer), m_index(index) {}

    QString toText() const { return m_outer ? m_outer->toText() + step() : QStringLiteral("$"); }

private:
    QString step() const
    {
        if (m_index >= 0)
            return QStringLiteral("[%1]").arg(m_index);
        const bool isPlain = std::all_of(m_name.begin(), m_name.end(), [](QChar character) {
            return character.unicode() < 0x80
                   && (character.isLetterOrNumber() || character == QLatin1Char('_'));
        });
        if (isPlain && !m_name.isEmpty())
            return QLatin1Char('.') + Abbreviated(m_name);
        return QLatin1Char('[') + Quoted(Abbreviated(m_name)) + QLatin1Char(']');
    }

    const JsonPath* m_outer = nullptr;
    QString m_name;
    int m_index = -1;
};

} // namespace ROUTERDOCUMENTS
