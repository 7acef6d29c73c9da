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
    return [=](int fragments) {
        return [=] {
            require(read(write(plainMessage(fragments))).fragments.size()
                    == static_cast<std::size_t>(fragments));
            return std::shared_ptr<void>();
        };
    };
}

} // namespace

void addPlainLoops()
{
    addTime("document to a string", "Qt loop", untilDestroyed(writing(plainDocument, documentOf)),
            wholeSizes);
    addTime("document to bytes", "Qt loop", untilDestroyed([](int fragments) -> Operation {
                const auto message = std::make_shared<PlainMessage>(plainMessage(fragments));
                return [=] { return std::make_shared<QByteArray>(plainDocumentBytes(*message)); };
            }),
            wholeSizes);
    addTime("document from a string", "Qt loop", untilDestroyed(reading(readPlainDocument, documentOf)),
            wholeSizes);
    addTime("document from bytes", "Qt loop", untilDestroyed(reading(readPlainXml, documentBytesOf)),
            wholeSizes);
    addTime("small message as an XML string", "Qt loop", passing(plainDocument, readPlainDocument), {1});
    addTime("small message", "Qt loop", passing(plainStream, readPlainStream), {1});
    addTime("XML write", "Qt loop", writing(plainXml, xmlOf));
    addTime("XML write to a string", "Qt loop", writing(plainXmlString, xmlStringOf));
    addTime("XML read", "Qt loop", reading(readPlainXml, xmlOf));
    addTime("binary write", "Qt loop", writing(plainStream, frameOf));
    addTime("binary read", "Qt loop", reading(readPlainStream, frameOf));
    addTime("binary write", "pointer loop", writing(encode, frameOf));
    addTime("binary read", "pointer loop", reading(decode, frameOf));
    addMemory("read document", "Qt loop", reading(readPlainStream, frameOf));
}

} // namespace benchmarks
