// SPDX-License-Identifier: MIT
// Values that are in force in one thread, the newest first. Not installed.
#pragma once

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace MODELKIT {

// One object for each thread. Static objects may still be in use after the thread_local objects of the main
// thread were destroyed.
template <class T>
class OfThread
{
public:
    // Null when it has been destroyed.
    static T* get()
    {
        static thread_local bool isGone = false;
        struct Holder
        {
            T value{};
            ~Holder() { isGone = true; }
        };
        static thread_local Holder holder;
        return isGone ? nullptr : &holder.value;
    }
};

// Keeps a value in force in the thread that constructs this object, until the object is destroyed. Objects
// may be destroyed in any order and in any thread: whoever is using the value then shares its ownership.
template <class T>
class InThread
{
public:
    explicit InThread(std::shared_ptr<T> value) : m_value(std::move(value))
    {
        auto* const own = OfThread<std::shared_ptr<Stack>>::get();
        if (own && *own)
            m_stack = *own;
        else
            m_stack = std::make_shared<Stack>();
        if (own)
            *own = m_stack;
        const std::lock_guard<std::mutex> lock(m_stack->mutex);
        m_stack->values.push_back(m_value);
    }
    InThread(const InThread&) = delete;
    InThread& operator=(const InThread&) = delete;

    ~InThread()
    {
        const std::lock_guard<std::mutex> lock(m_stack->mutex);
        auto& values = m_stack->values;
        values.erase(std::find(values.begin(), values.end(), m_value));
    }

    const std::shared_ptr<T>& value() const { return m_value; }

    // The newest value of the calling thread, or none.
    static std::shared_ptr<T> newest()
    {
        const auto* const own = OfThread<std::shared_ptr<Stack>>::get();
        if (!own || !*own)
            return nullptr;
        const std::lock_guard<std::mutex> lock((*own)->mutex);
        return (*own)->values.empty() ? nullptr : (*own)->values.back();
    }

private:
    struct Stack
    {
        std::mutex mutex;
        std::vector<std::shared_ptr<T>> values;
    };

    std::shared_ptr<Stack> m_stack;
    std::shared_ptr<T> m_value;
};

} // namespace MODELKIT
