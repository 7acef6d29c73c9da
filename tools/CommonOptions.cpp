// SPDX-License-Identifier: MIT
#include "CommonOptions.h"

namespace routermsg {

QVector<OptionTable> commonOptionRows()
{
    return {choice({"--format"}, "FORMAT", {"text", "json"}, "How results are written: text or json."),
            choice({"--color"}, "WHEN", {"auto", "always", "never"},
                   "Whether the output has colours: auto (on a terminal), always or never."),
            flag({"-q", "--quiet"}, "Write findings and errors only.")};
}

CommonOptions commonOptionsOf(const Arguments& arguments)
{
    CommonOptions options;
    options.format = arguments.choice<Format>("--format").value_or(options.format);
    options.colour = arguments.choice<Colour>("--color").value_or(options.colour);
    options.quiet = arguments.isGiven("--quiet");
    return options;
}

} // namespace routermsg
