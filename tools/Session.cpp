// SPDX-License-Identifier: MIT
#include "Session.h"

#include "ProgramName.h"

#include "documents/Text.h"

#include <QtCore/QJsonDocument>

#include <unistd.h>

#include <utility>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

Session::Session(const CommonOptions& options)
    : m_options(options), m_out(STDOUT_FILENO, QStringLiteral("standard output"), options.colour),
      m_err(STDERR_FILENO, QStringLiteral("standard error"), options.colour)
{}

void Session::writeJson(const QJsonObject& result, Output& output)
{
    output.write(ShowableJson(QString::fromUtf8(QJsonDocument(result).toJson(QJsonDocument::Indented))));
}

void Session::writeJsonLine(const QJsonObject& result)
{
    m_out.writeLine(ShowableJson(QString::fromUtf8(QJsonDocument(result).toJson(QJsonDocument::Compact))));
}

void Session::complain(const QString& text)
{
    m_out.flush();
    m_err.writeLine(m_err.paint(Style::Place, programName() + QLatin1Char(':')) + QLatin1Char(' ')
                    + Printable(text));
    m_err.flush();
}

QJsonArray Session::takeFindings() { return std::exchange(m_findings, {}); }

void Session::writeFindings()
{
    if (!m_findings.isEmpty())
        writeJson({{QStringLiteral("findings"), takeFindings()}});
}

void Session::complainInLine(const Finding& finding)
{
    if (format() == Format::Json)
        writeJsonLine({{QStringLiteral("findings"), QJsonArray{finding.toJson()}}});
    else
        complain(finding);
}

void Session::complain(const Finding& finding)
{
    if (m_isKeeping) {
        m_findings += finding.toJson();
        return;
    }
    m_out.flush();
    m_err.writeLine(finding.toLine(m_err));
    m_err.flush();
}

} // namespace routermsg
