// SPDX-License-Identifier: MIT
/// \file
/// Converting all files of a folder.
#pragma once

#include "Arguments.h"
#include "Finding.h"

namespace routermsg {

class Session;

/// The option --jobs.
OptionTable jobsOption();
/// Its value, or the number of processors.
/// \throws UsageError when it is no positive number.
int jobsOf(const Arguments& arguments);

/// The command `convert` for a folder. Its options mean the same for each file as for a single one.
/// \throws UsageError when the form is missing.
Status convertFolder(const Arguments& arguments, Session& session);

} // namespace routermsg
