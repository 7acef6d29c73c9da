// SPDX-License-Identifier: MIT
#include "modelkit/ReadingReport.h"

#include "modelkit/ThreadStack.h"

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
void ReadingReport::Clear() { *m_entering->value() = Collected(); }

} // namespace MODELKIT
