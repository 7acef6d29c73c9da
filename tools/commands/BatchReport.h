// SPDX-License-Identifier: MIT
/// \file
/// What is told about the conversion of a folder.
#pragma once

#include "Saving.h"
#include "Session.h"
#include "documents/LargeJson.h"

#include <QtCore/QJsonArray>
#include <QtCore/QString>

#include <optional>

namespace routermsg {

/// What became of one file.
struct BatchOutcome
{
    QString file;
    Status status = Fine;
    /// None if nothing could be read.
    std::optional<FileSummary> input = std::nullopt;
    /// None if nothing was written.
    std::optional<FileSummary> output = std::nullopt;
    /// Of a file that was not written because no message fits a condition: how many it has.
    std::optional<qint64> leftOut = std::nullopt;
};

/// Tells findings as soon as they are known, about each file when it is done, and in the end about all.
///
/// As text, findings go to standard error and the rest to standard output. As JSON, all is one object on
/// standard output.
class BatchReport
{
public:
    explicit BatchReport(Session& session);

    /// A problem of the folder.
    void addProblem(const Finding& finding);
    /// A finding about the file whose outcome is added next.
    void add(const Finding& finding);
    void add(const BatchOutcome& outcome);
    /// Ends the report. \returns the worst status.
    Status end();

private:
    qint64 failed() const { return m_files - m_converted - m_unfit; }
    QJsonObject summary() const;
    QString summaryText() const;

    Session& m_session;
    std::optional<ROUTERDOCUMENTS::LargeJson> m_json;
    QJsonArray m_problems;
    // Of the current file.
    QJsonArray m_findings;
    qint64 m_unlisted = 0;
    qint64 m_files = 0;
    qint64 m_converted = 0;
    qint64 m_unfit = 0;
    qint64 m_messages = 0;
    Status m_worst = Fine;
};

} // namespace routermsg
