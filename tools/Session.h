// SPDX-License-Identifier: MIT
/// \file
/// The environment of a command.
#pragma once

#include "CommonOptions.h"
#include "Finding.h"
#include "Output.h"

#include <QtCore/QJsonArray>
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
    /// Writes the finding's line to standard error, or keeps it for the JSON.
    void complain(const Finding& finding);

    /// For commands that write JSON line by line: an object on a line whose only member is the list
    /// "findings". Otherwise as complain() does.
    void complainInLine(const Finding& finding);

    /// For commands whose JSON goes to standard output: findings are kept for it from now on.
    void keepFindingsForJson() { m_isKeeping = format() == Format::Json; }
    /// What was kept. What no command takes becomes an object of its own in the end.
    QJsonArray takeFindings();
    /// Writes that object, unless nothing was kept.
    void writeFindings();

private:
    CommonOptions m_options;
    Output m_out;
    Output m_err;
    bool m_isKeeping = false;
    QJsonArray m_findings;
};

} // namespace routermsg
