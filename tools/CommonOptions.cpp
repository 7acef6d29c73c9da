// SPDX-License-Identifier: MIT
#include "CommonOptions.h"

#include "documents/Sentences.h"

namespace routermsg {

QVector<OptionTable> commonOptionRows(const QStringList& furtherFormats)
{
    const QStringList formats = QStringList{"text", "json"} + furtherFormats;
    return {
        choice({"--format"}, "FORMAT", formats,
               QStringLiteral("How results are written: %1.").arg(ROUTERDOCUMENTS::Alternatives(formats))),
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
