// SPDX-License-Identifier: MIT
#include "modelkit/Limits.h"

#include "modelkit/ThreadStack.h"

#include <algorithm>
#include <mutex>

namespace MODELKIT {

namespace {

std::mutex mutex;
Limits inProgram;

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
    const std::lock_guard<std::mutex> lock(mutex);
    return inProgram;
}

void Limits::Set(const Limits& limits)
{
    const Limits safeLimits = safe(limits);
    const std::lock_guard<std::mutex> lock(mutex);
    inProgram = safeLimits;
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
