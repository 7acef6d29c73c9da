// SPDX-License-Identifier: MIT
#include "modelkit/NotRepresentableException.h"

namespace MODELKIT {

// Not in the header, for the reason that Exceptions.cpp gives.
NotRepresentableException::NotRepresentableException(const QString& text) : ModelKitException(text) {}
NotRepresentableException::NotRepresentableException(const NotRepresentableException&) noexcept = default;
NotRepresentableException&
NotRepresentableException::operator=(const NotRepresentableException&) noexcept = default;
NotRepresentableException::~NotRepresentableException() = default;

} // namespace MODELKIT
