// SPDX-License-Identifier: MIT
#include "fuzz/Requirements.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace fuzzing {

void require(bool isSo, const char* what)
{
    if (isSo)
        return;
    std::fprintf(stderr, "Not so: %s\n", what);
    std::abort();
}

void requireSame(const std::string& one, const std::string& other, const char* what)
{
    if (one == other)
        return;
    const auto difference = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    const auto before = std::min<std::size_t>(static_cast<std::size_t>(difference.first - one.begin()), 200);
    const auto excerpt = [before](std::string::const_iterator at, std::string::const_iterator end) {
        return std::string(at - static_cast<std::ptrdiff_t>(before),
                           at + std::min<std::ptrdiff_t>(end - at, 300));
    };
    std::fprintf(stderr, "Not the same: %s\n--- one\n%s\n--- other\n%s\n", what,
                 excerpt(difference.first, one.end()).c_str(),
                 excerpt(difference.second, other.end()).c_str());
    std::abort();
}

} // namespace fuzzing
