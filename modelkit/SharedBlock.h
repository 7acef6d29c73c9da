// SPDX-License-Identifier: MIT
/// \file
/// Reference-counted data blocks: the storage of implicitly shared objects.
#pragma once

#include <atomic>
#include <utility>

namespace MODELKIT {

/// Base of a data block that several objects may hold. A copy of a block has a reference count of its own,
/// which starts at 0.
class SharedBlock
{
public:
    SharedBlock() noexcept = default;
    SharedBlock(const SharedBlock&) noexcept {}
    SharedBlock& operator=(const SharedBlock&) = delete;

protected:
    ~SharedBlock() = default;

private:
    template <class Block>
    friend class BlockPointer;
    std::atomic<int> m_references{0};
};

/// Points to a shared block, or is null. Copying the pointer shares the block; `detach()` gives the
/// holder a block of its own.
///
/// Unlike `QExplicitlySharedDataPointer`, this class reads the count with acquire ordering. With a relaxed
/// read, the last holder could write to the block without being ordered after the reads of a holder that
/// has just released it in another thread.
template <class Block>
class BlockPointer
{
public:
    BlockPointer() noexcept = default;

    /// Holds \a block, which nobody else has held yet.
    explicit BlockPointer(Block* block) noexcept : m_block(block) { acquire(); }

    BlockPointer(const BlockPointer& other) noexcept : m_block(other.m_block) { acquire(); }

    BlockPointer& operator=(const BlockPointer& other) noexcept
    {
        if (m_block != other.m_block)
            BlockPointer(other).swap(*this);
        return *this;
    }

    ~BlockPointer()
    {
        if (m_block && m_block->m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete m_block;
    }

    void swap(BlockPointer& other) noexcept { std::swap(m_block, other.m_block); }

    /// True when another holder shares the block.
    bool isShared() const noexcept
    {
        return m_block && m_block->m_references.load(std::memory_order_acquire) != 1;
    }

    /// Replaces a shared block by a copy that nobody else holds. When copying throws, the exception is passed
    /// on and the pointer keeps its block.
    void detach()
    {
        if (isShared())
            BlockPointer(new Block(*m_block)).swap(*this);
    }

    explicit operator bool() const noexcept { return m_block != nullptr; }
    Block& operator*() const noexcept { return *m_block; }
    Block* operator->() const noexcept { return m_block; }

private:
    void acquire() noexcept
    {
        if (m_block)
            m_block->m_references.fetch_add(1, std::memory_order_relaxed);
    }

    Block* m_block = nullptr;
};

} // namespace MODELKIT
