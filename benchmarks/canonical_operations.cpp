// SPDX-License-Identifier: MIT
// Runs one operation once on the canonical document, for tools that count instructions:
//
//     canonical_operations OPERATION FRAGMENTS
//
// Count only what happens inside measured(). Small messages are passed on FRAGMENTS times, with one fragment
// each.

#include "CanonicalDocument.h"
#include "Operations.h"
#include "PlainMessage.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

using namespace benchmarks;

namespace {

[[gnu::noinline]] void measured(const std::function<void()>& operation) { operation(); }

// Builds, writes, reads and destroys that many messages with one fragment.
template <class Pass>
void measurePassing(int messages, const Pass& pass)
{
    pass();
    measured([&] {
        for (int i = 0; i < messages; ++i)
            pass();
    });
}

Document validated(Document document = Document())
{
    document.SetValidate(true);
    return document;
}

struct CanonicalOperation
{
    const char* name;
    void (*run)(int fragments);
};

const CanonicalOperation operations[] = {
    {"build",
     [](int fragments) {
         Document document;
         measured([&] { document = canonicalDocument(fragments); });
     }},
    {"xml-write",
     [](int fragments) {
         const Document document = validated(canonicalDocument(fragments));
         measured([&] { xmlOf(document); });
     }},
    {"xml-read",
     [](int fragments) {
         const QByteArray xml = xmlOf(canonicalDocument(fragments));
         Document document = validated();
         measured([&] { parseXml(document, xml); });
     }},
    {"document-to-string",
     [](int fragments) {
         Document document = validated(canonicalDocument(fragments));
         measured([&] { document.GetXmlString(); });
     }},
    {"document-from-string",
     [](int fragments) {
         const QString xml = documentOf(canonicalDocument(fragments));
         Document document = validated();
         measured([&] { require(document.SetXmlString(xml, false)); });
     }},
    {"document-to-bytes",
     [](int fragments) {
         const Document document = validated(canonicalDocument(fragments));
         measured([&] { document.GetXmlBytes(); });
     }},
    {"document-from-bytes",
     [](int fragments) {
         const QByteArray xml = documentBytesOf(canonicalDocument(fragments));
         Document document = validated();
         measured([&] { require(document.SetXmlBytes(xml)); });
     }},
    {"binary-write",
     [](int fragments) {
         const Document document = validated(canonicalDocument(fragments));
         measured([&] { frameOf(document); });
     }},
    {"binary-read",
     [](int fragments) {
         const QByteArray frame = frameOf(canonicalDocument(fragments));
         Document document = validated();
         measured([&] { readFrame(document, frame); });
     }},
    {"small-binary", [](int messages) { measurePassing(messages, passSmallMessage); }},
    {"small-form", [](int messages) { measurePassing(messages, passSmallForm); }},
    {"small-xml", [](int messages) { measurePassing(messages, passSmallXmlMessage); }},
    {"copy",
     [](int fragments) {
         const Document document = validated(canonicalDocument(fragments));
         measured([&] { copyAndTouch(document); });
     }},
    {"compare",
     [](int fragments) {
         const Document document = validated(canonicalDocument(fragments));
         const Document same = canonicalDocument(fragments);
         bool isEqual = false;
         measured([&] { isEqual = same == document; });
         require(isEqual);
     }},
    {"xml-read-by-hand",
     [](int fragments) {
         const QByteArray xml = xmlOf(canonicalDocument(fragments));
         measured([&] { readPlainXml(xml); });
     }},
    {"small-binary-by-hand",
     [](int messages) { measurePassing(messages, [] { passPlainMessage(plainStream, readPlainStream); }); }}};

} // namespace

int main(int argc, char** argv)
{
    const int fragments = argc == 3 ? std::atoi(argv[2]) : 0;
    for (const CanonicalOperation& operation : operations) {
        if (argc == 3 && fragments > 0 && std::strcmp(operation.name, argv[1]) == 0) {
            operation.run(fragments);
            return 0;
        }
    }
    std::fputs("usage: canonical_operations OPERATION FRAGMENTS\n\nOperations:\n", stderr);
    for (const CanonicalOperation& operation : operations)
        std::fprintf(stderr, "  %s\n", operation.name);
    return 2;
}
