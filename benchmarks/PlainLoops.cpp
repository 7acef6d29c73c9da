// SPDX-License-Identifier: MIT
// The hand-written loops on plain structs, as contenders.

#include "CanonicalDocument.h"
#include "Operations.h"
#include "PlainMessage.h"
#include "Suite.h"

namespace benchmarks {

namespace {

template <class Write, class Canonical>
Prepare writing(const Write& write, const Canonical& canonical)
{
    return [=](int fragments) {
        const auto message = std::make_shared<PlainMessage>(plainMessage(fragments));
        require(write(*message) == canonical(canonicalDocument(fragments)));
        return [=] { return std::make_shared<decltype(write(*message))>(write(*message)); };
    };
}

template <class Read, class Canonical>
Prepare reading(const Read& read, const Canonical& canonical)
{
    return [=](int fragments) {
        const auto form = canonical(canonicalDocument(fragments));
        require(read(form) == plainMessage(fragments));
        return [=] { return std::make_shared<PlainMessage>(read(form)); };
    };
}

// Builds, writes, reads and destroys a message.
template <class Write, class Read>
Prepare passing(const Write& write, const Read& read)
{
    return [=](int) {
        require(read(write(plainMessage(1))) == plainMessage(1));
        return [=] {
            passPlainMessage(write, read);
            return std::shared_ptr<void>();
        };
    };
}

Prepare building()
{
    return
        [](int fragments) { return [=] { return std::make_shared<PlainMessage>(plainMessage(fragments)); }; };
}

Prepare copying()
{
    return [](int fragments) {
        const auto message = std::make_shared<PlainMessage>(plainMessage(fragments));
        return [=] { return std::make_shared<PlainMessage>(*message); };
    };
}

Prepare comparing()
{
    return [](int fragments) {
        const auto message = std::make_shared<PlainMessage>(plainMessage(fragments));
        const auto other = std::make_shared<PlainMessage>(plainMessage(fragments));
        return [=] { return *message == *other ? std::shared_ptr<void>() : std::shared_ptr<void>(message); };
    };
}

} // namespace

void addPlainLoops()
{
    addTime("build", "plain structs", building());
    addTime("GetXmlString", "Qt loop", writing(plainDocument, documentOf));
    addTime("SetXmlString", "Qt loop", reading(readPlainDocument, documentOf));
    addTime("SaveXml without the disk", "Qt loop", writing(plainDocumentBytes, documentBytesOf));
    addTime("LoadXml without the disk", "Qt loop", reading(readPlainXml, documentBytesOf));
    addTime("GetXml", "Qt loop", writing(plainXml, xmlOf));
    addTime("GetXml to a string", "Qt loop", writing(plainXmlString, xmlStringOf));
    addTime("ProcessXml", "Qt loop", reading(readPlainXml, xmlOf));
    addTime("GetBinary", "Qt loop", writing(plainStream, frameOf));
    addTime("SetBinary", "Qt loop", reading(readPlainStream, frameOf));
    addTime("GetBinary", "pointer loop", writing(encode, frameOf));
    addTime("SetBinary", "pointer loop", reading(decode, frameOf));
    // The same frames, without the object's id in front.
    addTime("GetBinaryRepresentation", "Qt loop", writing(plainStream, frameOf));
    addTime("SetBinaryRepresentation", "Qt loop", reading(readPlainStream, frameOf));
    addTime("message as XML", "Qt loop", passing(plainDocument, readPlainDocument), {1});
    addTime("message in binary", "Qt loop", passing(plainStream, readPlainStream), {1});
    addTime("copy", "plain structs", copying());
    addTime("compare", "plain structs", comparing());
    addMemory("built document", "plain structs", building());
    addMemory("read document", "plain structs", reading(readPlainStream, frameOf));
}

} // namespace benchmarks
