// SPDX-License-Identifier: MIT
#include "OutputPattern.h"

#include "UsageError.h"

#include <QtCore/QRegularExpression>

namespace routermsg {

OutputPattern::OutputPattern(const QString& text) : m_text(text)
{
    for (int at = 0; at < text.size();) {
        QString& part = m_hasNumber ? m_behind : m_before;
        if (text.at(at) != QLatin1Char('%')) {
            part += text.at(at++);
        } else if (text.mid(at, 2) == QLatin1String("%%")) {
            part += QLatin1Char('%');
            at += 2;
        } else {
            at = takeNumber(at);
        }
    }
    if (!m_hasNumber)
        refuse(
            QStringLiteral("has no place for the number of a message. Write %d there, or %05d for at least "
                           "five digits."));
}

// Returns the place behind it.
int OutputPattern::takeNumber(int at)
{
    static const QRegularExpression number(QStringLiteral("\\G%(?:0([1-9][0-9]?))?d"));
    const QRegularExpressionMatch found = number.match(m_text, at);
    if (!found.hasMatch())
        refuse(
            QStringLiteral("has a % that begins no number. Write %d, or %05d for at least five digits; %% is "
                           "a percent sign."));
    if (m_hasNumber)
        refuse(QStringLiteral("has several numbers. Write %d only once; %% is a percent sign."));
    m_hasNumber = true;
    if (!found.captured(1).isEmpty())
        m_digits = found.captured(1).toInt();
    return static_cast<int>(found.capturedEnd());
}

void OutputPattern::refuse(const QString& reason) const
{
    throw UsageError(QStringLiteral("The name ") + m_text + QLatin1Char(' ') + reason);
}

QString OutputPattern::nameOf(qint64 number) const
{
    return m_before + QString::number(number).rightJustified(m_digits, QLatin1Char('0')) + m_behind;
}

} // namespace routermsg
