// SPDX-License-Identifier: MIT
/// \file
/// Saving a file so that nothing can be lost.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Failure.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace MODELKIT {

/// Writes a file that holds just those bytes. An existing file stays as it is until the new one is
/// written whole and has reached the disk, and is then replaced at once. A device, a pipe or a folder is not
/// replaced.
/// \returns false, with the reason in \a failure, when the file cannot be written. The old file is unchanged
/// then, and nothing is left behind.
MODELKIT_EXPORT bool ReplaceFile(const QString& path, const QByteArray& bytes, Failure& failure);

} // namespace MODELKIT
