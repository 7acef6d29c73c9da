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

    /// Ends a block that nobody holds any more. A derived class may have an operation of this name of its
    /// own.
    template <class Block>
    static void destroy(Block* block) noexcept
    {
        delete block;
    }

    /// Releases what is in a block that its last holder leaves while the owner of its memory stays. A derived
    /// class may have an operation of this name of its own.
    template <class Block>
    static void empty(Block*) noexcept
    {}

protected:
    ~SharedBlock() = default;

    /// \name Blocks inside the memory of another one
    /// The owner of the memory keeps the block alive, but is not one of its holders.
    /// @{

    /// Called once, before there is a holder.
    void beginOwned() noexcept { m_references.store(owned, std::memory_order_relaxed); }
    /// Returns whether nobody holds the block any more.
    bool endOwned() noexcept { return giveUp(owned); }
    /// @}

private:
    template <class Block>
    friend class BlockPointer;

    // Counts for the owner of the memory, beside one for each holder.
    static constexpr int owned = 1 << 30;

    // Before anybody else can know the block.
    void acquireFirst() noexcept
    {
        m_references.store(m_references.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    }
    void acquire() noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }

    // Returns whether that was all. Whoever has all of it shares the block with nobody who could change the
    // count, so the expensive change is left out.
    bool giveUp(int references) noexcept
    {
        return m_references.load(std::memory_order_acquire) == references
               || m_references.fetch_sub(references, std::memory_order_acq_rel) == references;
    }

    // Whether there is one holder, and an owner. Then nobody can become another holder.
    bool isLastHeldOfOwned() const noexcept
    {
        return m_references.load(std::memory_order_acquire) == owned + 1;
    }

    bool isShared() const noexcept { return (m_references.load(std::memory_order_acquire) & ~owned) != 1; }

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
    explicit BlockPointer(Block* block) noexcept : m_block(block)
    {
        if (m_block)
            m_block->acquireFirst();
    }

    BlockPointer(const BlockPointer& other) noexcept : m_block(other.m_block)
    {
        if (m_block)
            m_block->acquire();
    }

    BlockPointer(BlockPointer&& other) noexcept { swap(other); }

    BlockPointer& operator=(BlockPointer&& other) noexcept
    {
        BlockPointer(std::move(other)).swap(*this);
        return *this;
    }

    BlockPointer& operator=(const BlockPointer& other) noexcept
    {
        if (m_block != other.m_block)
            share(other);
        return *this;
    }

    ~BlockPointer()
    {
        if (!m_block)
            return;
        if (m_block->isLastHeldOfOwned())
            Block::empty(m_block);
        if (m_block->giveUp(1))
            Block::destroy(m_block);
    }

    void swap(BlockPointer& other) noexcept { std::swap(m_block, other.m_block); }

    /// True when another holder shares the block.
    bool isShared() const noexcept { return m_block && m_block->isShared(); }

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
    // Apart, so that the usual assignment of the same block stays short.
    [[gnu::noinline]] void share(const BlockPointer& other) noexcept { BlockPointer(other).swap(*this); }

    Block* m_block = nullptr;
};

} // namespace MODELKIT
