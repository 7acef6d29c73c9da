// SPDX-License-Identifier: MIT
/// \file
/// Outputs that cannot be replaced as a whole.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

namespace routermsg {

/// The open descriptor that a path names, such as /dev/stdout or /dev/fd/3, also through links.
std::optional<int> descriptorNamedBy(const QString& path);

/// An output that is written to directly: a pipe, a terminal or another character device, or an open
/// descriptor. What was written stays written when something fails later.
class DirectOutput
{
public:
    /// Whether the path leads to such an output.
    static bool isAt(const QString& path);

    /// For a named pipe to which nothing was written: a reader that waits for the first byte gets the end.
    static void letReaderGo(const QString& path);

    /// Opens it. A pipe without a reader waits for one.
    /// \throws OutputRefusal
    explicit DirectOutput(const QString& path);
    DirectOutput(const DirectOutput&) = delete;
    DirectOutput& operator=(const DirectOutput&) = delete;
    /// Closes it. A caller who wants to know of errors calls close() before.
    ~DirectOutput();

    bool isTerminal() const;
    /// \throws OutputRefusal when not all bytes are written, also if the reader of a pipe has gone away.
    void write(const QByteArray& bytes);
    /// \throws OutputRefusal when what was written may be lost.
    void close();

private:
    [[noreturn]] void refuse(int error) const;

    QString m_path;
    int m_descriptor = -1;
};

} // namespace routermsg
