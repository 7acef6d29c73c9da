// SPDX-License-Identifier: MIT
// Runs operations on the canonical document, each once, for tools that count instructions:
//
//     canonical_operations OPERATION FRAGMENTS...
//
// Each runs in a process of its own, so that all find the heap in the same state. Prints the process of each.
// Count only what happens inside measured(). Small messages are passed on FRAGMENTS times, with one fragment
// each.

#include "CanonicalDocument.h"
#include "Operations.h"
#include "PlainMessage.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

#include <sys/wait.h>
#include <unistd.h>

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

Document validated(int fragments)
{
    Document document = canonicalDocument(fragments);
    document.SetValidate(true);
    return document;
}

Document emptyValidated()
{
    Document document;
    document.SetValidate(true);
    return document;
}

struct CanonicalOperation
{
    const char* name;
    void (*run)(int fragments);
};

// The document that was written stays while it is read again, so that reading finds none of its memory free.
const CanonicalOperation operations[] = {
    {"build",
     [](int fragments) {
         Document document;
         measured([&] { document = canonicalDocument(fragments); });
     }},
    {"build-of-copies",
     [](int fragments) {
         Document document;
         measured([&] { document = documentOfCopies(fragments); });
     }},
    {"xml-write",
     [](int fragments) {
         const Document document = validated(fragments);
         measured([&] { xmlOf(document); });
     }},
    {"xml-read",
     [](int fragments) {
         const Document source = canonicalDocument(fragments);
         const QByteArray xml = xmlOf(source);
         Document document = emptyValidated();
         measured([&] { parseXml(document, xml); });
     }},
    {"document-to-string",
     [](int fragments) {
         Document document = validated(fragments);
         measured([&] { document.GetXmlString(); });
     }},
    {"document-from-string",
     [](int fragments) {
         const Document source = canonicalDocument(fragments);
         const QString xml = documentOf(source);
         Document document = emptyValidated();
         measured([&] { require(document.SetXmlString(xml, false)); });
     }},
    {"document-to-bytes",
     [](int fragments) {
         const Document document = validated(fragments);
         measured([&] { document.GetXmlBytes(); });
     }},
    {"document-from-bytes",
     [](int fragments) {
         const Document source = canonicalDocument(fragments);
         const QByteArray xml = documentBytesOf(source);
         Document document = emptyValidated();
         measured([&] { require(document.SetXmlBytes(xml)); });
     }},
    {"binary-write",
     [](int fragments) {
         const Document document = validated(fragments);
         measured([&] { frameOf(document); });
     }},
    {"binary-read",
     [](int fragments) {
         const Document source = canonicalDocument(fragments);
         const QByteArray frame = frameOf(source);
         Document document = emptyValidated();
         measured([&] { readFrame(document, frame); });
     }},
    {"small-binary", [](int messages) { measurePassing(messages, passSmallMessage); }},
    {"small-form", [](int messages) { measurePassing(messages, passSmallForm); }},
    {"small-xml", [](int messages) { measurePassing(messages, passSmallXmlMessage); }},
    {"copy",
     [](int fragments) {
         const Document document = validated(fragments);
         measured([&] { copyAndTouch(document); });
     }},
    {"compare",
     [](int fragments) {
         const Document document = validated(fragments);
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

const CanonicalOperation* find(const char* name)
{
    for (const CanonicalOperation& operation : operations)
        if (std::strcmp(operation.name, name) == 0)
            return &operation;
    return nullptr;
}

int explain()
{
    std::fputs("usage: canonical_operations OPERATION FRAGMENTS...\n\nOperations:\n", stderr);
    for (const CanonicalOperation& operation : operations)
        std::fprintf(stderr, "  %s\n", operation.name);
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3 || argc % 2 == 0)
        return explain();
    for (int i = 1; i < argc; i += 2) {
        const CanonicalOperation* const operation = find(argv[i]);
        const int fragments = std::atoi(argv[i + 1]);
        if (!operation || fragments < 1)
            return explain();
        const pid_t process = fork();
        if (process == 0) {
            operation->run(fragments);
            return 0;
        }
        int status = -1;
        if (process < 0 || waitpid(process, &status, 0) != process || status != 0)
            return 1;
        std::printf("%s %d %d\n", operation->name, fragments, static_cast<int>(process));
        std::fflush(stdout);
    }
    return 0;
}
