#include "ConvertCommand.h"

#include "Progress.h"
#include "Save.h"

namespace routermsg {

Status convert(const ConvertOptions& options, Session& session)
{
    const Target target(options.output, options.to);
    Progress progress(session, 1);
    progress.next(inputName(options.input));

    const Loaded loaded = load(options.input, {options.from, options.validate});
    const Copy input{inputName(options.input), loaded.form, loaded.size, std::nullopt};
    const Copy output = save(*loaded.record, target, session);

    reportSaving(input.toText() + QStringLiteral(" -> ") + output.toText(),
                 {{QStringLiteral("input"), input.toJson()}, {QStringLiteral("output"), output.toJson()}},
                 target, session);
    return Fine;
}

} // namespace routermsg
