// SPDX-License-Identifier: MIT
// save_repeatedly FILE: saves two documents in turn until it is killed, and prints a line after the first
// time. save_repeatedly --check FILE: succeeds if the file is exactly one of the two.

#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <cstdio>
#include <cstring>

using namespace PELLU300ROUTERINTERFACEXML;

namespace {

PelLu300RouterInterfaceXml documentOf(int fragments, PelLu300RouterMessage::Type type)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(type);
    for (int i = 0; i < fragments; ++i) {
        Fragment fragment;
        fragment.GetDF_Params().SetFrequency(i);
        message.AppendFragment(fragment);
    }
    return document;
}

} // namespace

int main(int argc, char* argv[])
{
    const PelLu300RouterInterfaceXml small = documentOf(10, PelLu300RouterMessage::Request);
    const PelLu300RouterInterfaceXml large = documentOf(2000, PelLu300RouterMessage::Event);
    if (argc == 3 && std::strcmp(argv[1], "--check") == 0) {
        PelLu300RouterInterfaceXml document;
        if (!document.LoadXml(QString::fromLocal8Bit(argv[2]))) {
            std::fprintf(stderr, "%s\n", qPrintable(MODELKIT::IMKObject::GetLastFailure().GetSentence()));
            return 1;
        }
        return document == small || document == large ? 0 : 1;
    }
    if (argc != 2)
        return 2;
    const QString path = QString::fromLocal8Bit(argv[1]);
    if (!large.SaveXml(path))
        return 1;
    std::puts("saved");
    std::fflush(stdout);
    while (small.SaveXml(path) && large.SaveXml(path)) {
    }
    return 1;
}
