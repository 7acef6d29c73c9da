// Objects that are in force in the thread in which they were put, the newest first. Not installed.
#pragma once

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace MODELKIT {

// Keeps a value in force in the thread that constructs it, until it is destroyed. It may be destroyed in any
// order with others and in any thread: whoever uses the value at that time shares it.
template <class T>
class InThread
{
public:
    explicit InThread(std::shared_ptr<T> value) : m_stack(stack()), m_value(std::move(value))
    {
        if (!m_stack)
            m_stack = stack() = std::make_shared<Stack>();
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
        const auto& own = stack();
        if (!own)
            return nullptr;
        const std::lock_guard<std::mutex> lock(own->mutex);
        return own->values.empty() ? nullptr : own->values.back();
    }

private:
    struct Stack
    {
        std::mutex mutex;
        std::vector<std::shared_ptr<T>> values;
    };

    static std::shared_ptr<Stack>& stack()
    {
        static thread_local std::shared_ptr<Stack> own;
        return own;
    }

    std::shared_ptr<Stack> m_stack;
    std::shared_ptr<T> m_value;
};

} // namespace MODELKIT
