// SPDX-License-Identifier: MIT
/// \file
/// Pointing from an error to the command that shows the bytes around it.
#pragma once

#include "InputOptions.h"
#include "documents/DocumentError.h"

#include "modelkit/Place.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace routermsg {

/// "routermsg show --hex bad.bin shows the parts around offset 42."; empty for errors about which the bytes
/// tell no more.
/// \param place of the error in the input, where the command shows it
/// \param path the input, as the user named it
/// \param message the number of the message in its input
/// \param format how the input is written
QString hexHint(const ROUTERDOCUMENTS::DocumentError& error, const MODELKIT::Place& place,
                const QString& path, qint64 message, const InputFormat& format);

/// Whether a hint is such a one.
bool isHexHint(const QString& hint);

} // namespace routermsg
