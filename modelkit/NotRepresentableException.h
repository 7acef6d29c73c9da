// SPDX-License-Identifier: MIT
// The exception for a text that the form cannot represent. Not installed.
#pragma once

#include "modelkit/Exceptions.h"

namespace MODELKIT {

// Records throw it while a DocumentContext refuses such texts. It never leaves the whole-document operation,
// which turns it into a Failure. The place names the member.
class MODELKIT_EXPORT NotRepresentableException : public ModelKitException
{
public:
    explicit NotRepresentableException(const QString& text);
    NotRepresentableException(const NotRepresentableException& other) noexcept;
    NotRepresentableException& operator=(const NotRepresentableException& other) noexcept;
    ~NotRepresentableException() override;
};

} // namespace MODELKIT
