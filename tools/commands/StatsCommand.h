// SPDX-License-Identifier: MIT
/// \file
/// The command `stats`: what recorded documents hold.
#pragma once

#include "Session.h"

#include <QtCore/QStringList>

namespace routermsg {

struct StatsOptions
{
    /// Files and folders, or "-".
    QStringList inputs;
};

Status stats(const StatsOptions& options, Session& session);

} // namespace routermsg
