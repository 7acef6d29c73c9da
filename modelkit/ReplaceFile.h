// SPDX-License-Identifier: MIT
/// \file
/// Replacing a file without the risk of losing it.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Failure.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace MODELKIT {

/// Writes a file that holds exactly those bytes. An existing file is replaced atomically, once the new one is
/// completely written and has reached the disk. A device, a pipe or a folder is not replaced.
/// \returns false, with the reason in \a failure, when the file cannot be written. The old file is unchanged
/// then, and no temporary file remains.
MODELKIT_EXPORT bool ReplaceFile(const QString& path, const QByteArray& bytes, Failure& failure);

} // namespace MODELKIT
