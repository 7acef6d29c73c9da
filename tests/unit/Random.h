// SPDX-License-Identifier: MIT
// Decisions that are left to chance, or to a fuzzer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>

namespace testing_support {

class Random
{
public:
    explicit Random(unsigned int seed) : m_engine(seed) {}

    // Takes the decisions from these bytes. When they are used up, below(limit) is always limit - 1.
    Random(const std::uint8_t* bytes, std::size_t size)
        : m_areFromBytes(true), m_bytes(bytes), m_end(bytes + size)
    {}

    int below(int limit)
    {
        return m_areFromBytes ? belowFromBytes(limit)
                              : static_cast<int>(m_engine() % static_cast<unsigned int>(limit));
    }
    bool oneIn(int number) { return below(number) == 0; }

    template <class Container>
    const auto& of(const Container& container)
    {
        return container[static_cast<std::size_t>(below(static_cast<int>(std::size(container))))];
    }

private:
    int belowFromBytes(int limit)
    {
        const int count = limit <= 0x100 ? 1 : limit <= 0x10000 ? 2 : 4;
        if (m_end - m_bytes < count) {
            m_bytes = m_end;
            return limit - 1;
        }
        unsigned int drawn = 0;
        for (int i = 0; i < count; ++i)
            drawn = drawn << 8U | *m_bytes++;
        return static_cast<int>(drawn % static_cast<unsigned int>(limit));
    }

    std::mt19937 m_engine;
    bool m_areFromBytes = false;
    const std::uint8_t* m_bytes = nullptr;
    const std::uint8_t* m_end = nullptr;
};

} // namespace testing_support
