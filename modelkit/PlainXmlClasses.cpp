// SPDX-License-Identifier: MIT
#include "modelkit/PlainXmlClasses.h"

#include <atomic>

namespace MODELKIT {

namespace {

std::atomic<const PlainXmlClass*> lastPlainXmlClass{nullptr};

} // namespace

void registerPlainXml(PlainXmlClass& added)
{
    added.next = lastPlainXmlClass.load(std::memory_order_relaxed);
    while (!lastPlainXmlClass.compare_exchange_weak(added.next, &added, std::memory_order_release,
                                                    std::memory_order_relaxed)) {
    }
}

const PlainXmlClass* plainXmlOf(const IMKObject& object)
{
    // Where a class has several descriptions, because libraries were loaded separately, the object is written
    // and read by its virtual operations.
    const std::type_info* const type = &typeid(object);
    const PlainXmlClass* found = lastPlainXmlClass.load(std::memory_order_acquire);
    while (found && found->type != type)
        found = found->next;
    return found;
}

} // namespace MODELKIT
