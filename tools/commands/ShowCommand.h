// SPDX-License-Identifier: MIT
/// \file
/// The command `show`: a document to be read by people.
#pragma once

#include "Session.h"

#include <QtCore/QString>

namespace routermsg {

struct ShowOptions
{
    /// A file, or "-".
    QString input;
    /// Whether the bytes of the binary form are shown.
    bool hex = false;
};

Status show(const ShowOptions& options, Session& session);

} // namespace routermsg
