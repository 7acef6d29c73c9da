// SPDX-License-Identifier: MIT
// Ending the program by SIGINT and SIGTERM.
#pragma once

#include <QtCore/QObject>

#include <functional>

namespace ROUTERSIM {

// From now on such a signal calls the action in the event loop, as long as the context exists. The second
// one ends the program at once, as without this. False when the system does not allow it.
bool onInterruption(QObject& context, const std::function<void()>& action);

} // namespace ROUTERSIM
