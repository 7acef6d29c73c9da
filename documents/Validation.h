// SPDX-License-Identifier: MIT
/// \file
/// Whether documents are validated.
#pragma once

namespace ROUTERDOCUMENTS {

/// Whether the validation of a record is switched on before the record is read.
enum class Validation
{
    Off, ///< wrong values are read as far as possible
    On   ///< wrong values are refused, and the record is checked
};

} // namespace ROUTERDOCUMENTS
