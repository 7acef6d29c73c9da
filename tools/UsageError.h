// SPDX-License-Identifier: MIT
/// \file
/// A mistake in the command line.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <exception>

namespace routermsg {

class UsageError : public std::exception
{
public:
    /// \param text sentences that say what is wrong and what is possible
    explicit UsageError(const QString& text) : m_text(text), m_utf8(text.toUtf8()) {}

    const QString& text() const noexcept { return m_text; }
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_text;
    QByteArray m_utf8;
};

} // namespace routermsg
