// SPDX-License-Identifier: MIT
// Dissects any bytes as a binary form, plain, compressed or a bare frame. The parts are all bytes, in order.
#include "fuzz/AnyRecord.h"

#include "documents/Dissection.h"

using namespace fuzzing;
using namespace ROUTERDOCUMENTS;

namespace {

// What is put together from the parts that a dissection visits.
template <class Dissect>
QByteArray joinedParts(const Dissect& dissect)
{
    QByteArray joined;
    dissect([&](const Part& part) {
        require(part.offset == joined.size(), "a part begins where the one before it ends");
        require(part.depth >= 0 && part.depth < 100, "the depth of a part");
        require(part.kind != Part::End || part.bytes.isEmpty(), "an end has no bytes");
        require(!PartJson(part).isEmpty(), "a part has a JSON form");
        joined += part.bytes;
    });
    return joined;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const QByteArray& form = input.bytes;
    const MODELKIT::LimitsInScope inScope(smallLimits());
    const auto& classes = RecordInfo::All();
    const int which = input.decisions.below(static_cast<int>(classes.size()) + 1);
    const RecordInfo* const info = which < classes.size() ? classes.at(which) : nullptr;
    require(joinedParts([&](const PartVisitor& visit) { DissectPlain(form, visit, info); }) == form,
            "the parts of a plain form are all of it");
    QByteArray plain;
    require(joinedParts([&](const PartVisitor& visit) { DissectCompressed(form, plain, visit); }) == form,
            "the parts of a compressed form are all of it");
    joinedParts([&](const PartVisitor& visit) { DissectPlain(plain, visit); });
    FrameFormat format;
    format.hasId = input.decisions.oneIn(2);
    format.byteOrder = input.decisions.oneIn(2) ? QDataStream::LittleEndian : QDataStream::BigEndian;
    if (!format.hasId && !info)
        return 0;
    require(joinedParts([&](const PartVisitor& visit) { DissectFrame(form, format, info, plain, visit); })
                == form,
            "the parts of a frame are all of it");
    return 0;
}
