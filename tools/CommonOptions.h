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
    Json,
    Csv ///< only for the commands that offer it
};

struct CommonOptions
{
    Format format = Format::Text;
    Colour colour = Colour::Auto;
    /// Only findings and errors are written: no lines about what is fine, no summary, no progress.
    bool quiet = false;
};

/// \param furtherFormats formats behind text and json
QVector<OptionTable> commonOptionRows(const QStringList& furtherFormats);

/// The values given for these rows. A wrong value counts as not given.
CommonOptions commonOptionsOf(const Arguments& arguments);

} // namespace routermsg
