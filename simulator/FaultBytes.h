// SPDX-License-Identifier: MIT
// What a client receives instead of a message, and what the log says about it.
#pragma once

#include "simulator/Randomness.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace ROUTERSIM {

// Bytes that begin no message, whatever follows them.
QByteArray garbage(int size, Randomness& random);
// The first half of the message, at least one byte.
QByteArray firstHalf(const QByteArray& message);
// Another id than this one.
unsigned int wrongID(unsigned int messageID, Randomness& random);

} // namespace ROUTERSIM
