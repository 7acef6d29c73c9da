// SPDX-License-Identifier: MIT
/// \file
/// Work in several threads that looks as if it were done in order.
#pragma once

#include <functional>

namespace routermsg {

/// What a piece of work has to tell, done in the thread that waits for all work.
using Telling = std::function<void()>;
/// Passes it on. Waits if too much has not been told yet. It does not return when all work is to end; the
/// work must let its exception pass, which is no std::exception.
using Tell = std::function<void(Telling)>;
/// The piece of work with that number.
using NumberedWork = std::function<void(int number, const Tell& tell)>;

/// Does the pieces of work from 0 on in so many threads. What they tell is done here, in the order of their
/// numbers. Only a certain amount of it is kept, however far the threads are ahead.
///
/// When telling throws, no more work begins, and the exception is passed on. So is one that a piece of work
/// throws, once everything in front of it has been told.
/// \throws std::system_error when no thread can be started
void doInOrder(int count, int threads, const NumberedWork& work);

} // namespace routermsg
