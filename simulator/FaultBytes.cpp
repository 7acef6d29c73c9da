// SPDX-License-Identifier: MIT
#include "simulator/FaultBytes.h"

#include <algorithm>
#include <limits>

namespace ROUTERSIM {

QByteArray garbage(int size, Randomness& random)
{
    constexpr quint64 byteValues = 256;
    // No form and no encoding of a message has this byte.
    constexpr char neverFirst = '\xF5';
    QByteArray bytes(size, neverFirst);
    for (int i = 1; i < size; ++i)
        bytes[i] = static_cast<char>(random.Below(byteValues));
    return bytes;
}

QByteArray firstHalf(const QByteArray& message)
{
    return message.left(std::max(static_cast<int>(message.size() / 2), 1));
}

unsigned int wrongID(unsigned int messageID, Randomness& random)
{
    // What is added is never a multiple of the number of ids. XML carries no id above 2147483647.
    constexpr quint64 ids = quint64(std::numeric_limits<int>::max()) + 1;
    return static_cast<unsigned int>((messageID + 1 + random.Below(ids - 1)) % ids);
}

} // namespace ROUTERSIM
