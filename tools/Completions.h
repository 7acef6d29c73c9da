// SPDX-License-Identifier: MIT
/// \file
/// The completions of words for shells.
#pragma once

#include "CommandTables.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

/// The shells for which there are completions.
QStringList shells();

/// The completion for a shell.
QString completion(const ProgramTable& program, const QString& shell);

} // namespace routermsg
