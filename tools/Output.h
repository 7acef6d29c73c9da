// SPDX-License-Identifier: MIT
/// \file
/// The standard streams to which the program writes, and colours.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <exception>
#include <functional>

namespace routermsg {

enum class Colour
{
    Auto, ///< on a terminal, unless NO_COLOR is set or the terminal is a dumb one
    Always,
    Never
};

/// The meaning of a piece of text, which determines its colour.
enum class Style
{
    Plain,
    Good,    ///< fine, the same
    Error,   ///< wrong
    Warning, ///< doubtful
    Place,   ///< where it is: file, line, path
    Name,    ///< names of classes and members
    Value,   ///< values of members
    Added,   ///< only in the second document
    Removed, ///< only in the first document
    Faint    ///< less important: types, members that are not set
};

/// The output cannot be written.
class OutputError : public std::exception
{
public:
    /// \param error the value of errno
    OutputError(const QString& name, int error);

    /// Whether nobody reads the output any more. Then there is nothing to complain about.
    bool isBrokenPipe() const noexcept;
    const char* what() const noexcept override { return m_text.constData(); }

private:
    int m_error;
    QByteArray m_text;
};

/// Writes all bytes to a descriptor.
/// \returns 0, or the value of errno.
int writeAll(int descriptor, const QByteArray& bytes);

/// Standard output or standard error. Text is always written in UTF-8.
class Output
{
public:
    /// \param name the name in messages
    Output(int descriptor, const QString& name, Colour colour);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    /// Writes what is still buffered. Errors are ignored.
    ~Output();

    /// \name Writing
    /// Text is buffered, on a terminal only until its line ends.
    /// \throws OutputError
    /// @{
    void write(const QString& text);
    void writeLine(const QString& line = QString());
    void writeBytes(const QByteArray& bytes);
    void flush();
    /// A function that writes text here, for code that does not know this class. Valid as long as the output.
    std::function<void(const QString&)> writer()
    {
        return [this](const QString& text) { write(text); };
    }
    /// @}

    using Action = std::function<void()>;
    /// Lets the output share the terminal with a progress display. To write, it calls \a aside, which hides
    /// the display while it runs the action. Empty: there is no display.
    void setAside(const std::function<void(const Action&)>& aside) { m_aside = aside; }

    bool isTerminal() const { return m_isTerminal; }
    /// The number of columns of the terminal; 0 if this is not a terminal.
    int width() const;
    /// The text in the style's colour, or unchanged if the output has no colours.
    QString paint(Style style, const QString& text) const;

private:
    int m_descriptor;
    QString m_name;
    bool m_isTerminal;
    bool m_hasColours;
    QByteArray m_kept;
    std::function<void(const Action&)> m_aside;
};

} // namespace routermsg
