#include "modelkit/Limits.h"

#include <mutex>

namespace MODELKIT {

namespace {

std::mutex mutex;
Limits inForce;

} // namespace

Limits Limits::Get()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return inForce;
}

void Limits::Set(const Limits& limits)
{
    const std::lock_guard<std::mutex> lock(mutex);
    inForce = limits;
}

} // namespace MODELKIT
