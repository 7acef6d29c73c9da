// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

namespace benchmarks {

// Stops a benchmark whose result is wrong.
inline void require(bool correct)
{
    if (!correct)
        throw std::logic_error("the document did not come back as it was");
}

} // namespace benchmarks
