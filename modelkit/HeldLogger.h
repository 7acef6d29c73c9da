// SPDX-License-Identifier: MIT
/// \file
/// The logger as objects hold it.
#pragma once

#include "modelkit/SharedBlock.h"

#include <memory>
#include <utility>

namespace MODELKIT {

class Logger;

/// A logger, or none, in the size of one pointer. An owner and the objects that it owns share all of it, so
/// passing it on neither allocates nor fails.
class HeldLogger
{
public:
    HeldLogger() noexcept = default;
    explicit HeldLogger(std::shared_ptr<Logger> logger)
        : m_block(isNone(logger) ? nullptr : new Block(std::move(logger)))
    {}

    /// The logger; null when there is none.
    std::shared_ptr<Logger> get() const noexcept { return m_block ? m_block->logger : nullptr; }

    /// Whether that is the logger, with the same owner.
    bool holds(const std::shared_ptr<Logger>& logger) const noexcept
    {
        if (!m_block)
            return isNone(logger);
        const auto& held = m_block->logger;
        return held == logger && !held.owner_before(logger) && !logger.owner_before(held);
    }

    friend bool operator==(const HeldLogger& a, const HeldLogger& b) noexcept
    {
        return b.m_block ? a.holds(b.m_block->logger) : !a.m_block;
    }

private:
    struct Block : SharedBlock
    {
        explicit Block(std::shared_ptr<Logger>&& held) noexcept : logger(std::move(held)) {}
        std::shared_ptr<Logger> logger;
    };

    // A null pointer may still share the ownership of something.
    static bool isNone(const std::shared_ptr<Logger>& logger) noexcept
    {
        return !logger && logger.use_count() == 0;
    }

    BlockPointer<Block> m_block;
};

} // namespace MODELKIT
