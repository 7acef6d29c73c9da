// SPDX-License-Identifier: MIT
#include "BatchReport.h"

#include "Conversion.h"

#include <algorithm>
#include <utility>

namespace routermsg {

namespace {

Finding unlisted(qint64 count, const QString& file)
{
    return Finding::ofFile(file, count == 1 ? QStringLiteral("1 more finding is not listed.")
                                            : QStringLiteral("%1 more findings are not listed.").arg(count));
}

} // namespace

BatchReport::BatchReport(Session& session) : m_session(session)
{
    if (session.format() != Format::Json)
        return;
    m_json.emplace(session.out().writer());
    m_json->BeginList(QStringLiteral("files"));
}

void BatchReport::addProblem(const Finding& finding)
{
    m_worst = std::max(m_worst, finding.status);
    if (m_json)
        m_problems += finding.toJson();
    else
        m_session.complain(finding);
}

void BatchReport::add(const Finding& finding)
{
    // The findings of a file are one item of the JSON, which is kept in memory.
    constexpr int mostListed = 10000;
    if (!m_json)
        m_session.complain(finding);
    else if (m_findings.size() < mostListed)
        m_findings += finding.toJson();
    else
        ++m_unlisted;
}

void BatchReport::add(const BatchOutcome& outcome)
{
    ++m_files;
    m_converted += outcome.output ? 1 : 0;
    m_unfit += outcome.leftOut ? 1 : 0;
    m_messages += outcome.output ? outcome.output->messages : 0;
    m_worst = std::max(m_worst, outcome.status);
    if (m_json) {
        if (m_unlisted > 0)
            m_findings += unlisted(std::exchange(m_unlisted, 0), outcome.file).toJson();
        QJsonObject item{{QStringLiteral("file"), outcome.file},
                         {QStringLiteral("findings"), std::exchange(m_findings, {})}};
        if (outcome.input)
            item[QStringLiteral("input")] = outcome.input->toJson();
        if (outcome.output)
            item[QStringLiteral("output")] = outcome.output->toJson();
        if (outcome.leftOut)
            item[QStringLiteral("leftOut")] = *outcome.leftOut;
        m_json->AddItem(item);
    } else if (outcome.output && !m_session.isQuiet()) {
        m_session.out().writeLine(outcome.input->toText() + QStringLiteral(" -> ")
                                  + outcome.output->toText());
    }
}

Status BatchReport::end()
{
    if (m_unfit > 0 && m_converted == 0 && m_worst == Fine)
        addProblem(nothingFits(QString()));
    if (m_json) {
        m_json->EndList();
        m_json->Add(QStringLiteral("findings"), m_problems);
        m_json->Add(QStringLiteral("summary"), summary());
        m_json->End();
    } else if (!m_session.isQuiet() && m_files > 0) {
        m_session.out().writeLine(summaryText());
    }
    return m_worst;
}

QJsonObject BatchReport::summary() const
{
    return {{QStringLiteral("files"), m_files},
            {QStringLiteral("converted"), m_converted},
            {QStringLiteral("noneFits"), m_unfit},
            {QStringLiteral("failed"), failed()},
            {QStringLiteral("messages"), m_messages}};
}

QString BatchReport::summaryText() const
{
    const auto counted = [](qint64 count, const QString& what) {
        return count == 1 ? QStringLiteral("1 ") + what : QStringLiteral("%1 %2s").arg(count).arg(what);
    };
    const QString unfit =
        m_unfit == 0 ? QString() : QStringLiteral("%1 without a message that fits, ").arg(m_unfit);
    return QStringLiteral("%1: %2 converted, %3%4 failed; %5")
        .arg(counted(m_files, QStringLiteral("file")), QString::number(m_converted), unfit,
             QString::number(failed()), counted(m_messages, QStringLiteral("message")));
}

} // namespace routermsg
