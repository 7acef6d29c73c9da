// SPDX-License-Identifier: MIT
/// \file
/// The command `diff`: where two documents differ.
#pragma once

#include "Session.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

struct DiffOptions
{
    /// Files, one of which may be "-".
    QString first;
    QString second;
    /// Paths of members that do not count; IgnoredMembers tells what they look like.
    QStringList ignored;
};

Status diff(const DiffOptions& options, Session& session);

} // namespace routermsg
