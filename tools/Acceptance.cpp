// SPDX-License-Identifier: MIT
#include "Acceptance.h"

#include "documents/Text.h"
#include "documents/ValueTexts.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using MODELKIT::ReadingReport;

namespace {

// A value that may be cut off proves nothing.
bool isWhole(const QString& value)
{
    return !value.isEmpty() && value.size() < ReadingReport::maximalValueCharacters;
}

bool isHeldByTheRecord(const ReadingReport::Entry& entry)
{
    switch (entry.kind) {
    case ReadingReport::NotFinite:
    case ReadingReport::MissingPayload:
    case ReadingReport::MissingMember:
        return true;
    case ReadingReport::LostDecimals:
        return isWhole(entry.value) && IsKeptExactly(entry.value);
    default:
        return false;
    }
}

// The report may speak about the decimals that the record's own forms have, not about those it holds.
QString textOfLoss(const ReadingReport::Entry& entry)
{
    if (entry.kind != ReadingReport::LostDecimals || entry.value.isEmpty())
        return entry.text;
    const QString number = QLatin1Char('"') + Abbreviated(entry.value) + QLatin1Char('"');
    return isWhole(entry.value) ? QStringLiteral("%1 cannot be kept exactly; it was read as %2.")
                                      .arg(number, Exactly(entry.value.toDouble()))
                                : QStringLiteral("%1 is so long that digits may have been lost.").arg(number);
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
        if (!isHeldByTheRecord(entry)) {
            Finding loss = acceptedSilently(entry, message);
            loss.text = textOfLoss(entry);
            findings += loss;
        }
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
