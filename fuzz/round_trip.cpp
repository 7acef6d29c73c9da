// SPDX-License-Identifier: MIT
// Reads any bytes as an XML document, and takes what was read through the binary form, the compressed one and
// JSON back to XML. The last document is the first one that was written.
#include "fuzz/AnyRecord.h"

#include "documents/JsonForm.h"

using namespace fuzzing;
using namespace ROUTERDOCUMENTS;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    useAnyClass(input.decisions, [&](auto tag) {
        using R = typename decltype(tag)::Record;
        R first;
        try {
            if (!first.SetXmlBytes(input.bytes))
                return;
        } catch (const ModelKitException&) {
            return;
        }
        const QByteArray xml = first.GetXmlBytes();
        if (xml.isNull())
            return;
        R fromXml;
        require(fromXml.SetXmlBytes(xml), "what was written as XML can be read");
        R fromBinary;
        require(fromBinary.SetBinaryRepresentation(fromXml.GetBinaryRepresentationAsQByteArray()),
                "what was written in the binary form can be read");
        require(fromXml == fromBinary, "the binary form keeps everything");
        R fromCompressed;
        require(fromCompressed.SetBinaryRepresentation(
                    fromBinary.GetCompressedBinaryRepresentationAsQByteArray(1)),
                "what was compressed can be read");
        const auto fromJson = FromJson(ToJson(fromCompressed));
        requireSame(xml.toStdString(), fromJson->GetXmlBytes().toStdString(), "XML behind all forms");
    });
    return 0;
}
