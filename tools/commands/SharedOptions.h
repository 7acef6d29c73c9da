// SPDX-License-Identifier: MIT
/// \file
/// Options and arguments that several commands have: their rows and their values.
#pragma once

#include "Arguments.h"
#include "InputList.h"
#include "Messages.h"
#include "documents/Forms.h"
#include "documents/PathPattern.h"

#include <QtCore/QString>

#include <optional>

namespace routermsg {

/// An option whose value is a form.
/// @{
OptionTable formOption(const char* name, const QString& text);
std::optional<ROUTERDOCUMENTS::Form> formOf(const Arguments& arguments, const char* name);
/// @}

/// Which messages of a recording a command works on.
/// @{
OptionTable messageOption();
/// \throws UsageError for a value that is no number and no range.
MessageRange messagesOf(const Arguments& arguments);
/// @}

/// An option or argument that takes the path of a member, which completions offer.
/// @{
OptionTable takingPath(OptionTable row);
/// \throws UsageError for a wrong path.
ROUTERDOCUMENTS::PathPattern pathOf(const Arguments& arguments, const char* name);
/// @}

/// Any number of documents, also those in folders.
/// @{
OptionTable inputsArgument();
/// What they stand for.
InputList inputsOf(const Arguments& arguments);
/// @}

} // namespace routermsg
