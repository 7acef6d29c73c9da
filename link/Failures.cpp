// SPDX-License-Identifier: MIT
#include "link/Failures.h"

#include "documents/DocumentError.h"

#include <exception>
#include <new>

namespace ROUTERLINK {

using MODELKIT::Failure;

namespace {

Failure interruptedBy(const char* what)
{
    return {Failure::Interrupted,
            QStringLiteral("The work on the message was interrupted: %1").arg(QString::fromUtf8(what)),
            {}};
}

// Needs no memory.
Failure outOfMemory()
{
    return {Failure::Interrupted, QStringLiteral("There is not enough memory for the message."), {}};
}

// The exception that is being handled.
Failure explainedException()
{
    try {
        throw;
    } catch (const ModelKitException& exception) {
        const ROUTERDOCUMENTS::DocumentError error(exception);
        return {error.GetKind(), error.GetText(), error.GetPlace()};
    } catch (const std::bad_alloc&) {
        return outOfMemory();
    } catch (const std::exception& exception) {
        return interruptedBy(exception.what());
    } catch (...) {
        return interruptedBy("unknown exception");
    }
}

} // namespace

Failure failureOfException() noexcept
{
    try {
        return explainedException();
    } catch (...) {
        return outOfMemory();
    }
}

} // namespace ROUTERLINK
