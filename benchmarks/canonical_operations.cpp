// SPDX-License-Identifier: MIT
// Runs one operation once on the canonical document, for tools that count instructions:
//
//     canonical_operations OPERATION FRAGMENTS
//
// Count only what happens inside measured().

#include "CanonicalDocument.h"
#include "Operations.h"
#include "PlainMessage.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

using namespace benchmarks;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;

namespace {

[[gnu::noinline]] void measured(const std::function<void()>& operation) { operation(); }

bool run(const char* name, int fragments)
{
    const auto is = [name](const char* operation) { return std::strcmp(name, operation) == 0; };
    PelLu300RouterInterfaceXml document = canonicalDocument(fragments);
    document.SetValidate(true);
    PelLu300RouterInterfaceXml other;
    other.SetValidate(true);
    if (is("build")) {
        measured([&] { other = canonicalDocument(fragments); });
    } else if (is("xml-write")) {
        measured([&] { xmlOf(document); });
    } else if (is("xml-read")) {
        const QByteArray xml = xmlOf(document);
        measured([&] { parseXml(other, xml); });
    } else if (is("binary-write")) {
        measured([&] { frameOf(document); });
    } else if (is("binary-read")) {
        const QByteArray frame = frameOf(document);
        measured([&] { readFrame(other, frame); });
    } else if (is("copy")) {
        measured([&] { copyAndTouch(document); });
    } else if (is("compare")) {
        const PelLu300RouterInterfaceXml same = canonicalDocument(fragments);
        bool isEqual = false;
        measured([&] { isEqual = same == document; });
        return isEqual;
    } else if (is("xml-read-by-hand")) {
        const QByteArray xml = xmlOf(document);
        measured([&] { readPlainXml(xml); });
    } else {
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const int fragments = argc == 3 ? std::atoi(argv[2]) : 0;
    if (fragments > 0 && run(argv[1], fragments))
        return 0;
    std::fputs("usage: canonical_operations build|xml-write|xml-read|binary-write|binary-read|copy|compare|"
               "xml-read-by-hand FRAGMENTS\n",
               stderr);
    return 2;
}
