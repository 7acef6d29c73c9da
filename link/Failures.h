// SPDX-License-Identifier: MIT
// Exceptions as failures. Not installed.
#pragma once

#include "modelkit/Failure.h"

namespace ROUTERLINK {

// The exception that is being handled. What is no exception of the library has the kind Failure::Interrupted.
MODELKIT::Failure failureOfException() noexcept;

// Calls the action, which returns a failure, and makes one of every exception.
template <class Action>
MODELKIT::Failure guarded(const Action& action)
{
    try {
        return action();
    } catch (...) {
        return failureOfException();
    }
}

} // namespace ROUTERLINK
