// SPDX-License-Identifier: MIT
/// \file
/// The option that says in which form messages are sent.
#pragma once

#include "Arguments.h"
#include "documents/Forms.h"

namespace routermsg {

OptionTable sendingFormOption();
/// The form; binary without the option.
ROUTERDOCUMENTS::Form sendingFormOf(const Arguments& arguments);

} // namespace routermsg
