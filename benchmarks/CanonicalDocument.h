// SPDX-License-Identifier: MIT
// The document on which everything is measured: a reply whose fragments cycle through all seven
// payloads with every member set.
#pragma once

#include "routerinterface/PelLu300RouterInterfaceXml.h"

namespace benchmarks {

inline void fillCanonically(PELLU300ROUTERINTERFACEXML::Fragment& fragment, int i)
{
    using namespace PELLU300ROUTERINTERFACEXML;
    const auto port = static_cast<unsigned int>(5000 + i % 1000);
    switch (i % 7) {
    case Fragment::MastershipState: {
        auto& state = fragment.GetMastershipState();
        state.SetState(MastershipState::MasterPresent);
        state.SetMasterClientID(QStringLiteral("client-%1").arg(i));
        break;
    }
    case Fragment::AcquireMastership:
        fragment.GetAcquireMastership().SetSuccess(true);
        break;
    case Fragment::ReleaseMastership:
        fragment.GetReleaseMastership().SetSuccess(false);
        break;
    case Fragment::OstraInterfacePort:
        fragment.GetOstraInterfacePort().SetPort(port);
        break;
    case Fragment::PelVtConnectServer: {
        auto& server = fragment.GetPelVtConnectServer();
        server.SetAddress(QStringLiteral("192.168.1.%1").arg(i % 250));
        server.SetPort(port);
        break;
    }
    case Fragment::RouterVtServerPort:
        fragment.GetRouterVtServerPort().SetPort(port);
        break;
    default: {
        auto& params = fragment.GetDF_Params();
        params.SetFrequency(98500000.25 + i);
        params.SetDemodulationFrequency(10700000.5);
        params.SetBandwidth(15000);
        params.SetPanoramaSpan(2000000.75);
        break;
    }
    }
}

inline PELLU300ROUTERINTERFACEXML::Fragment canonicalFragment(int i)
{
    PELLU300ROUTERINTERFACEXML::Fragment fragment;
    fillCanonically(fragment, i);
    return fragment;
}

// Changes the payload of a canonical fragment and then restores it.
inline void touchPayload(PELLU300ROUTERINTERFACEXML::Fragment& fragment)
{
    using namespace PELLU300ROUTERINTERFACEXML;
    switch (fragment.GetChoiceFragment()) {
    case Fragment::MastershipState:
        fragment.GetMastershipState().SetState(MastershipState::MasterPresent);
        break;
    case Fragment::AcquireMastership:
        fragment.GetAcquireMastership().SetSuccess(true);
        break;
    case Fragment::ReleaseMastership:
        fragment.GetReleaseMastership().SetSuccess(false);
        break;
    case Fragment::OstraInterfacePort:
        fragment.GetOstraInterfacePort().SetPort(fragment.GetOstraInterfacePort().GetPort());
        break;
    case Fragment::PelVtConnectServer:
        fragment.GetPelVtConnectServer().SetPort(fragment.GetPelVtConnectServer().GetPort());
        break;
    case Fragment::RouterVtServerPort:
        fragment.GetRouterVtServerPort().SetPort(fragment.GetRouterVtServerPort().GetPort());
        break;
    default:
        fragment.GetDF_Params().SetBandwidth(15000);
        break;
    }
}

// Add(message, i) appends the canonical fragment of that number.
template <class Add>
PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml buildDocument(int fragments, const Add& add)
{
    using namespace PELLU300ROUTERINTERFACEXML;
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Reply);
    message.SetMessageID(4711);
    for (int i = 0; i < fragments; ++i)
        add(message, i);
    return document;
}

inline PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml canonicalDocument(int fragments)
{
    return buildDocument(fragments, [](auto& message, int i) { fillCanonically(message.AddFragment(), i); });
}

// From fragments that are built first and then appended as copies.
inline PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml documentOfCopies(int fragments)
{
    return buildDocument(fragments,
                         [](auto& message, int i) { message.AppendFragment(canonicalFragment(i)); });
}

} // namespace benchmarks
