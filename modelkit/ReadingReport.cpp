// SPDX-License-Identifier: MIT
#include "modelkit/ReadingReport.h"

#include "modelkit/ThreadStack.h"

#include <algorithm>

namespace MODELKIT {

class ReadingReport::Entering : public InThread<Collected>
{
public:
    using InThread::InThread;
};

ReadingReport::ReadingReport() : m_entering(std::make_unique<Entering>(std::make_shared<Collected>())) {}
ReadingReport::~ReadingReport() = default;

std::shared_ptr<ReadingReport::Collected> ReadingReport::Current() { return Entering::newest(); }

const QVector<ReadingReport::Entry>& ReadingReport::GetEntries() const
{
    return m_entering->value()->entries;
}
qint64 ReadingReport::GetDropped() const { return m_entering->value()->dropped; }
void ReadingReport::Add(const QVector<Entry>& entries, qint64 dropped)
{
    const auto report = Current();
    if (!report)
        return;
    const auto room = std::max<qint64>(maximalEntries - report->entries.size(), 0);
    const qint64 kept = std::min<qint64>(entries.size(), room);
    report->entries += entries.mid(0, static_cast<int>(kept));
    report->dropped += entries.size() - kept + dropped;
}
void ReadingReport::Clear() { *m_entering->value() = Collected(); }

} // namespace MODELKIT
