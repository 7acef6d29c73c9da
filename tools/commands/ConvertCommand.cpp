// SPDX-License-Identifier: MIT
#include "ConvertCommand.h"

#include "InputFiles.h"
#include "Progress.h"
#include "Saving.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

Status convert(const ConvertOptions& options, Session& session)
{
    const Target target(options.output, options.to);
    Progress progress(session, 1);
    progress.next(inputName(options.input));

    const Document loaded = load(options.input, {options.from, options.validate});
    const FileSummary input{inputName(options.input), loaded.form, loaded.size, std::nullopt};
    const FileSummary output = save(*loaded.record, target, session);

    reportSaving(input.toText() + QStringLiteral(" -> ") + output.toText(),
                 {{QStringLiteral("input"), input.toJson()}, {QStringLiteral("output"), output.toJson()}},
                 target, session);
    return Fine;
}

} // namespace routermsg
