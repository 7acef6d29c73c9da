// SPDX-License-Identifier: MIT
/// \file
/// The environment of a command.
#pragma once

#include "CommonOptions.h"
#include "Finding.h"
#include "Output.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

namespace routermsg {

/// The environment of a command.
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

    /// Writes a result as indented JSON that is safe to show on a terminal.
    void writeJson(const QJsonObject& result) { writeJson(result, m_out); }
    void writeJson(const QJsonObject& result, Output& output);
    /// Writes a result as JSON on one line that is safe to show on a terminal.
    void writeJsonLine(const QJsonObject& result);
    /// Writes "routermsg: text" to standard error; the text is made printable.
    void complain(const QString& text);
    /// Writes the finding's line to standard error.
    void complain(const Finding& finding);

private:
    CommonOptions m_options;
    Output m_out;
    Output m_err;
};

} // namespace routermsg
