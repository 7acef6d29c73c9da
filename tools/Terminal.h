/// \file
/// What the program writes: text that is safe to be shown, colours, and progress.
#pragma once

#include "Finding.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <exception>
#include <memory>

namespace routermsg {

/// The format of results.
enum class Format
{
    Text,
    Json
};

enum class Colour
{
    Auto, ///< on a terminal, unless NO_COLOR is set or the terminal is a dumb one
    Always,
    Never
};

/// The options that all commands have.
struct CommonOptions
{
    Format format = Format::Text;
    Colour colour = Colour::Auto;
    /// Only findings and errors are written: no lines about what is fine, no summary, no progress.
    bool quiet = false;
};

/// What a piece of text is, which decides about its colour.
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
    Faint    ///< what matters less: types, what is not set
};

/// The text with everything escaped as in JSON that could steer a terminal or hide or reorder text:
/// control characters, line breaks, marks of direction, halves of surrogate pairs, noncharacters.
/// Everything that comes from a document or from the command line must pass through this, or quoted(),
/// before it is written as text.
QString printable(const QString& text);

/// The printable text in double quotes, with quotes and backslashes in it escaped: a JSON string.
QString quoted(const QString& text);

/// The beginning of a text that is too long for a message.
QString abbreviated(const QString& text);

/// A whole JSON or XML document with the same content that is safe to be shown: in it such characters
/// stand in texts only, where both have escapes for them.
/// @{
QString showableJson(const QString& json);
QString showableXml(const QString& xml);
/// @}

/// The shortest decimal text that gives the same number when it is read, with an exponent only when it
/// is very large or small; "nan", "inf", "-inf".
QString exactly(double value);

/// The output cannot be written.
class OutputError : public std::exception
{
public:
    /// \param error the value of errno
    OutputError(const QString& name, int error);

    /// Nobody reads the output any more; that is no reason to say anything.
    bool isBrokenPipe() const noexcept;
    const char* what() const noexcept override { return m_text.constData(); }

private:
    int m_error;
    QByteArray m_text;
};

class Progress;
class ProgressBar;

/// Standard output or standard error. Text is always written in UTF-8.
class Output
{
public:
    /// \param name how messages call it
    Output(int descriptor, const QString& name, Colour colour);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    /// Writes what is still kept; an error then goes unnoticed.
    ~Output();

    /// \name Writing
    /// What is written is kept until it is much, or on a terminal until the line ends.
    /// \throws OutputError
    /// @{
    void write(const QString& text);
    void writeLine(const QString& line = QString());
    void writeBytes(const QByteArray& bytes);
    void flush();
    /// @}

    bool isTerminal() const { return m_isTerminal; }
    /// The columns of the terminal; 0 when it is none, and nothing needs to be made to fit.
    int width() const;
    /// The text in the style's colour, or as it stands when the output has no colours.
    QString paint(Style style, const QString& text) const;

private:
    friend class Progress;

    int m_descriptor;
    QString m_name;
    bool m_isTerminal;
    bool m_hasColours;
    QByteArray m_kept;
    ProgressBar* m_progress = nullptr;
};

/// What a command runs in.
class Session
{
public:
    explicit Session(const CommonOptions& options);

    Format format() const { return m_options.format; }
    bool isQuiet() const { return m_options.quiet; }

    /// Results.
    Output& out() { return m_out; }
    /// Messages about the work itself.
    Output& err() { return m_err; }

    /// Writes a result as indented JSON. Nothing in it can steer a terminal.
    void writeJson(const QJsonObject& result) { writeJson(result, m_out); }
    void writeJson(const QJsonObject& result, Output& output);
    /// Writes "routermsg: text" to standard error; the text is made printable.
    void complain(const QString& text);
    /// Writes the finding's line to standard error.
    void complain(const Finding& finding);

private:
    CommonOptions m_options;
    Output m_out;
    Output m_err;
};

/// Shows how far the work is, on standard error if that is a terminal, as soon as it takes longer than a
/// second. What is written meanwhile is not mixed up with it.
///
/// \code
/// Progress progress(session, files.size());
/// for (const QString& file : files) {
///     progress.next(file);
///     ...
/// }
/// \endcode
class Progress
{
public:
    /// \param total the number of steps
    Progress(Session& session, int total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Wipes it off.
    ~Progress();

    /// A step begins.
    /// \param name what it works on
    void next(const QString& name);

private:
    Session& m_session;
    std::unique_ptr<ProgressBar> m_bar;
};

} // namespace routermsg
