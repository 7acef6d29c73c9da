// SPDX-License-Identifier: MIT
// Reads any bytes as JSON. What is read is written and read again: nothing changes any more.
#include "fuzz/AnyRecord.h"

#include "documents/DocumentError.h"
#include "documents/JsonForm.h"

using namespace fuzzing;
using namespace ROUTERDOCUMENTS;

namespace {

std::string contentOf(const IMKObject& record)
{
    std::string content;
    appendSeen(content, record, {});
    return content;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray json(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const MODELKIT::LimitsInScope inScope(smallLimits());
    std::unique_ptr<IMKObject> record;
    try {
        record = FromJson(json);
    } catch (const DocumentError& error) {
        require(error.GetKind() != Failure::None && !error.GetText().isEmpty(),
                "an error says what is wrong");
        require(error.GetPlace().line <= json.count('\n') + json.count('\r') + 1, "the line exists");
        return 0;
    }
    const MODELKIT::LimitsInScope anySize((MODELKIT::Limits()));
    for (const QByteArray& written : {ToJson(*record), ToJsonLine(*record)}) {
        const auto again = FromJson(written);
        requireSame(contentOf(*record), contentOf(*again), written.constData());
        requireSame(ToJson(*record).toStdString(), ToJson(*again).toStdString(),
                    "JSON that is written again");
    }
    return 0;
}
