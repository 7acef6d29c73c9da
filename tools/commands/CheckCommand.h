// SPDX-License-Identifier: MIT
/// \file
/// The command `check`: are documents valid?
#pragma once

#include "Session.h"

#include <QtCore/QStringList>

namespace routermsg {

struct CheckOptions
{
    /// Files and folders, or "-".
    QStringList inputs;
    /// Whether what the library accepts in silence is reported, too.
    bool strict = false;
};

Status check(const CheckOptions& options, Session& session);

} // namespace routermsg
