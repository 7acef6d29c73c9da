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
        const QByteArray form = canonical(canonicalDocument(fragments));
        require(read(form) == plainMessage(fragments));
        return [=] { return std::make_shared<PlainMessage>(read(form)); };
    };
}

} // namespace

void addPlainLoops()
{
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
