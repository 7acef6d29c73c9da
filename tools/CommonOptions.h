// SPDX-License-Identifier: MIT
/// \file
/// The options of all commands that write results.
#pragma once

#include "Arguments.h"
#include "Output.h"

namespace routermsg {

/// The format of results.
enum class Format
{
    Text,
    Json
};

struct CommonOptions
{
    Format format = Format::Text;
    Colour colour = Colour::Auto;
    /// Only findings and errors are written: no lines about what is fine, no summary, no progress.
    bool quiet = false;
};

QVector<OptionTable> commonOptionRows();

/// The values given for these rows. A wrong value counts as not given.
CommonOptions commonOptionsOf(const Arguments& arguments);

} // namespace routermsg
