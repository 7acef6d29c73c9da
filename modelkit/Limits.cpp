// SPDX-License-Identifier: MIT
#include "modelkit/Limits.h"

#include "modelkit/ThreadStack.h"

#include <algorithm>
#include <atomic>
#include <mutex>

namespace MODELKIT {

namespace {

std::mutex mutex;
Limits inProgram;
// Changes with the limits of the program, so that threads can keep a copy of them.
std::atomic<unsigned int> edition{1};

Limits ofProgram()
{
    static thread_local Limits copy;
    static thread_local unsigned int editionOfCopy = 0;
    if (editionOfCopy != edition.load(std::memory_order_acquire)) {
        const std::lock_guard<std::mutex> lock(mutex);
        copy = inProgram;
        editionOfCopy = edition.load(std::memory_order_relaxed);
    }
    return copy;
}

template <class Number>
void makeSafe(Number& limit)
{
    limit = std::max<Number>(limit, 0);
}

Limits safe(Limits limits)
{
    makeSafe(limits.inputSize);
    makeSafe(limits.inflatedSize);
    makeSafe(limits.nestingDepth);
    makeSafe(limits.attributes);
    makeSafe(limits.listItems);
    makeSafe(limits.waitingTime);
    return limits;
}

} // namespace

Limits Limits::Get()
{
    if (const auto inScope = InThread<const Limits>::newest())
        return *inScope;
    return ofProgram();
}

void Limits::Set(const Limits& limits)
{
    const Limits safeLimits = safe(limits);
    const std::lock_guard<std::mutex> lock(mutex);
    inProgram = safeLimits;
    edition.fetch_add(1, std::memory_order_release);
}

class LimitsInScope::Entry : public InThread<const Limits>
{
public:
    using InThread::InThread;
};

LimitsInScope::LimitsInScope(const Limits& limits)
    : m_entry(std::make_unique<Entry>(std::make_shared<const Limits>(safe(limits))))
{}
LimitsInScope::~LimitsInScope() = default;

} // namespace MODELKIT
