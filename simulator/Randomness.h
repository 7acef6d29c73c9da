// SPDX-License-Identifier: MIT
// Numbers that look random and are the same for the same seed, with every compiler.
#pragma once

#include "simulator/Scenario.h"

#include <QtCore/QtGlobal>

#include <random>

namespace ROUTERSIM {

// Each stream of a seed has numbers of its own. So what happens to one client does not depend on the others.
class Randomness
{
public:
    Randomness(quint64 seed, quint64 stream)
    {
        // The distributions of the standard library differ between compilers, these classes do not.
        constexpr int wordBits = 32;
        std::seed_seq words{static_cast<quint32>(seed), static_cast<quint32>(seed >> wordBits),
                            static_cast<quint32>(stream), static_cast<quint32>(stream >> wordBits)};
        m_engine.seed(words);
    }

    // From 0 to count - 1. Some are a little more likely than others, which nobody notices for the counts
    // that are used here.
    quint64 Below(quint64 count) { return m_engine() % count; }

    qint64 In(const Span& span)
    {
        return span.least + static_cast<qint64>(Below(static_cast<quint64>(span.most - span.least) + 1));
    }

    bool Happens(double probability)
    {
        constexpr int digits = 53;
        const quint64 drawn = m_engine() >> (64 - digits);
        return static_cast<double>(drawn) < probability * static_cast<double>(quint64(1) << digits);
    }

private:
    std::mt19937_64 m_engine;
};

} // namespace ROUTERSIM
