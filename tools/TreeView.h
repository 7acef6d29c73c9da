// SPDX-License-Identifier: MIT
/// \file
/// A record as an indented tree, with types and with the members that are not set.
#pragma once

#include "modelkit/IMKObject.h"

namespace routermsg {

class Output;

void writeTree(const MODELKIT::IMKObject& record, Output& output);

} // namespace routermsg
