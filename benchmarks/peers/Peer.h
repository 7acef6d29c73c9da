// SPDX-License-Identifier: MIT
// What the peers share: the canonical values in the types of the standard library, and the structure of their
// benchmarks.
#pragma once

#include "benchmarks/PlainMessage.h"
#include "benchmarks/Suite.h"

#include <memory>
#include <string>

namespace benchmarks {

constexpr unsigned int canonicalMessageId = 4711;

// Passes the values of the i-th canonical fragment to one of the functions of a sink. A mastership state
// is always MasterPresent.
template <class Sink>
void fillFragment(int i, Sink&& sink)
{
    const auto port = static_cast<unsigned int>(5000 + i % 1000);
    switch (i % 7) {
    case 0:
        return sink.mastershipState("client-" + std::to_string(i));
    case 1:
        return sink.acquireMastership(true);
    case 2:
        return sink.releaseMastership(false);
    case 3:
        return sink.ostraInterfacePort(port);
    case 4:
        return sink.connectServer("192.168.1." + std::to_string(i % 250), port);
    case 5:
        return sink.routerServerPort(port);
    default:
        return sink.params(98500000.25 + i, 10700000.5, 15000, 2000000.75);
    }
}

// A library with its own message type. Each function returns its result as an operation does.
template <class Document>
struct Peer
{
    const char* name;
    std::shared_ptr<Document> (*build)(int fragments);
    std::shared_ptr<std::string> (*write)(const Document& document);
    std::shared_ptr<Document> (*read)(const std::string& form);
    // Whether a written form holds the canonical values.
    bool (*isCanonical)(const std::string& form, int fragments);
};

inline bool isCanonicalXml(const std::string& xml, int fragments)
{
    return readPlainXml(QByteArray::fromStdString(xml)) == plainMessage(fragments);
}

inline std::string canonicalXml(int fragments) { return plainXml(plainMessage(fragments)).toStdString(); }

// Indented, with a declaration.
inline std::string canonicalXmlDocument(int fragments)
{
    return plainDocumentBytes(plainMessage(fragments)).toStdString();
}

template <class Document>
Prepare building(const Peer<Document>& peer)
{
    return [=](int fragments) {
        require(peer.isCanonical(*peer.write(*peer.build(fragments)), fragments));
        return [=] { return peer.build(fragments); };
    };
}

template <class Document>
Prepare writing(const Peer<Document>& peer)
{
    return [=](int fragments) {
        const std::shared_ptr<const Document> document = peer.build(fragments);
        require(peer.isCanonical(*peer.write(*document), fragments));
        return [=] { return peer.write(*document); };
    };
}

// An operation that reads the result of canonical().
template <class Document, class Canonical>
Prepare reading(const Peer<Document>& peer, const Canonical& canonical)
{
    return [=](int fragments) {
        const std::string form = canonical(fragments);
        require(peer.isCanonical(*peer.write(*peer.read(form)), fragments));
        return [=] { return peer.read(form); };
    };
}

// An operation that copies a document and changes the copy.
template <class Document, class Touch>
Prepare copying(const Peer<Document>& peer, const Touch& touch)
{
    return [=](int fragments) {
        const std::shared_ptr<const Document> document = peer.build(fragments);
        require(peer.isCanonical(*peer.write(Document(*document)), fragments));
        return [=] {
            auto copy = std::make_shared<Document>(*document);
            touch(*copy);
            return copy;
        };
    };
}

} // namespace benchmarks
