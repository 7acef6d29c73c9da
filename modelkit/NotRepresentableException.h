// SPDX-License-Identifier: MIT
// How a record tells the whole-document operation that writes it of a text that the form cannot carry.
// Not installed.
#pragma once

#include "modelkit/Exceptions.h"

namespace MODELKIT {

// Thrown by the records while a DocumentContext refuses such texts; never leaves the operation, which makes
// a Failure of it. The place names the member.
class MODELKIT_EXPORT NotRepresentableException : public ModelKitException
{
public:
    explicit NotRepresentableException(const QString& text);
    NotRepresentableException(const NotRepresentableException& other) noexcept;
    NotRepresentableException& operator=(const NotRepresentableException& other) noexcept;
    ~NotRepresentableException() override;
};

} // namespace MODELKIT
