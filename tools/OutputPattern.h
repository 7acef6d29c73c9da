// SPDX-License-Identifier: MIT
/// \file
/// Names of files that differ in a number.
#pragma once

#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace routermsg {

/// A name with one place for a number: "out/%05d.xml" is "out/00007.xml" for 7. "%d" has no more digits than
/// the number needs, and "%%" is a percent sign.
class OutputPattern
{
public:
    /// \throws UsageError when the text has no place for a number, several, or another "%".
    explicit OutputPattern(const QString& text);

    /// The pattern as it was given.
    const QString& text() const { return m_text; }
    QString nameOf(qint64 number) const;
    /// The part of a name up to the number.
    const QString& beforeNumber() const { return m_before; }

private:
    int takeNumber(int at);
    [[noreturn]] void refuse(const QString& reason) const;

    QString m_text;
    QString m_before;
    QString m_behind;
    int m_digits = 1;
    bool m_hasNumber = false;
};

} // namespace routermsg
