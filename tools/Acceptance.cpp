// SPDX-License-Identifier: MIT
#include "Acceptance.h"

namespace routermsg {

using MODELKIT::ReadingReport;

namespace {

template <class Predicate>
QVector<Finding> warningsOf(const ReadingReport& report, const InputMessage& message, const Predicate& isTold)
{
    QVector<Finding> findings;
    for (const auto& entry : report.GetEntries()) {
        if (!isTold(entry.kind))
            continue;
        Finding finding;
        finding.severity = Finding::Warning;
        finding.text = entry.text;
        finding.place = message.placeInInput(entry.place);
        finding.place.file = message.name;
        findings += finding;
    }
    if (report.GetDropped() > 0)
        findings += moreNotListed(report.GetDropped(), message.name);
    return findings;
}

bool isHeldByTheRecord(ReadingReport::Kind kind)
{
    return kind == ReadingReport::NotFinite || kind == ReadingReport::MissingPayload;
}

} // namespace

QVector<Finding> acceptedSilently(const ReadingReport& report, const InputMessage& message)
{
    return warningsOf(report, message, [](ReadingReport::Kind) { return true; });
}

QVector<Finding> lostByReading(const ReadingReport& report, const InputMessage& message)
{
    return warningsOf(report, message, [](ReadingReport::Kind kind) { return !isHeldByTheRecord(kind); });
}

Finding moreNotListed(qint64 count, const QString& file)
{
    Finding finding;
    finding.severity = Finding::Warning;
    finding.text = QStringLiteral("%1 more such warnings are not listed.").arg(count);
    finding.place.file = file;
    return finding;
}

} // namespace routermsg
