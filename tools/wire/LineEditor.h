// SPDX-License-Identifier: MIT
/// \file
/// Lines that are typed at a terminal.
#pragma once

#include "wire/Completion.h"
#include "wire/LineSource.h"

#include <functional>
#include <memory>

namespace routermsg {

class Session;
class WireLoop;

/// Lets people edit lines: the Tab key completes words, the arrow keys bring back lines. What the session
/// writes meanwhile appears above the line. Ctrl-D on an empty line is the end. There can be one at a time.
///
/// \returns null if lines cannot be edited: standard input or output is no terminal, or one that cannot move
/// its cursor, or the program was built without libedit.
std::unique_ptr<LineSource> editedLines(WireLoop& loop, Session& session,
                                        const LineSource::Receivers& receivers,
                                        const std::function<Completion(const QString& line)>& completer);

} // namespace routermsg
