// SPDX-License-Identifier: MIT
/// \file
/// Whether documents are validated.
#pragma once

namespace ROUTERDOCUMENTS {

/// Whether the validation of a record is switched on before the record is read.
enum class Validation
{
    Off,
    On
};

} // namespace ROUTERDOCUMENTS
