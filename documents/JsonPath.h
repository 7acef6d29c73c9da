// The way to a value in a JSON text. Not installed.
#pragma once

#include "Finding.h"
#include "documents/Text.h"

#include <QtCore/QString>

#include <algorithm>

namespace routermsg {

// The way to a value. It costs nothing until somebody asks for the text.
class JsonPath
{
public:
    JsonPath() = default;
    JsonPath(const JsonPath& outer, const QString& name) : m_outer(&outer), m_name(name) {}
    JsonPath(const JsonPath& outer, int index) : m_outer(&outer), m_index(index) {}

    QString toText() const { return m_outer ? m_outer->toText() + step() : QStringLiteral("$"); }

    [[noreturn]] void refuse(const QString& text) const
    {
        Finding finding;
        finding.text = text;
        finding.place.path = toText();
        throw Refusal(finding);
    }

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
            return QLatin1Char('.') + abbreviated(m_name);
        return QLatin1Char('[') + quoted(abbreviated(m_name)) + QLatin1Char(']');
    }

    const JsonPath* m_outer = nullptr;
    QString m_name;
    int m_index = -1;
};

} // namespace routermsg
