// SPDX-License-Identifier: MIT
/// \file
/// Completion scripts for shells.
#pragma once

#include "CommandTables.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

/// The shells for which there are scripts.
QStringList shells();

/// The script for a shell.
QString completion(const ProgramTable& program, const QString& shell);

} // namespace routermsg
