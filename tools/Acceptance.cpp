// SPDX-License-Identifier: MIT
#include "Acceptance.h"

namespace routermsg {

using MODELKIT::ReadingReport;

namespace {

bool isHeldByTheRecord(ReadingReport::Kind kind)
{
    return kind == ReadingReport::NotFinite || kind == ReadingReport::MissingPayload;
}

} // namespace

Finding acceptedSilently(const ReadingReport::Entry& entry, const InputMessage& message)
{
    Finding finding;
    finding.severity = Finding::Warning;
    finding.text = entry.text;
    finding.place = message.placeInInput(entry.place);
    finding.place.file = message.name;
    return finding;
}

QVector<Finding> lostByReading(const ReadingReport& report, const InputMessage& message)
{
    QVector<Finding> findings;
    for (const auto& entry : report.GetEntries())
        if (!isHeldByTheRecord(entry.kind))
            findings += acceptedSilently(entry, message);
    if (report.GetDropped() > 0)
        findings += moreNotListed(report.GetDropped(), message.name);
    return findings;
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
