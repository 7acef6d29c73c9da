// SPDX-License-Identifier: MIT
// A program to look at with a debugger. gdb_printers.sh stops it in lookHere() and prints the variables of
// main().
#include "modelkit/Failure.h"
#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QVector>

#include <cstdlib>
#include <cstring>
#include <new>

using namespace PELLU300ROUTERINTERFACEXML;

namespace {

[[gnu::noinline]] void lookHere() { asm volatile(""); }

void fillFragments(PelLu300RouterMessage& message)
{
    auto& state = message.AddFragment().GetMastershipState();
    state.SetState(MastershipState::RouterIsMaster);
    // ü, a quotation mark, and a character outside the BMP.
    state.SetMasterClientID(QString::fromUtf8("M\303\274nchen \"1\" \360\235\204\236"));
    message.AddFragment().GetAcquireMastership().SetSuccess(true);
    message.AddFragment().GetReleaseMastership().SetSuccess(false);
    message.AddFragment().GetOstraInterfacePort().SetPort(5000);
    auto& server = message.AddFragment().GetPelVtConnectServer();
    server.SetAddress("");
    server.SetPort(1);
    message.AddFragment().GetRouterVtServerPort().SetPort(4294967295U);
    auto& tuning = message.AddFragment().GetDF_Params();
    tuning.SetFrequency(98.5e6);
    tuning.SetPanoramaSpan(-0.25);
    message.AddFragment();
}

} // namespace

int main()
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Reply);
    message.SetMessageID(4000000000U);
    fillFragments(message);
    const QVector<Fragment> fragments = message.GetFragment();
    [[maybe_unused]] const auto* const named = &fragments.at(0).GetMastershipState();
    [[maybe_unused]] const Fragment& reference = fragments.at(3);
    [[maybe_unused]] const Fragment* const pointer = &fragments.at(4);

    const Fragment untouched;
    const AcquireMastership withoutValues;
    [[maybe_unused]] const bool hasValue = withoutValues.GetSuccess();
    MastershipState strange;
    strange.SetState(static_cast<MastershipState::State>(7));
    strange.SetMasterClientID(QString());

    // The payload that is set first is the one inside the data block; the others are in a list.
    Fragment several;
    several.GetOstraInterfacePort().SetPort(1);
    several.GetRouterVtServerPort().SetPort(2);
    several.GetPelVtConnectServer().SetPort(3);
    several.SetDefaultRouterVtServerPort(RouterVtServerPort());
    Fragment notSet = several;
    notSet.ResetPelVtConnectServer();
    const Fragment shared = several;

    class Derived : public MastershipState
    {
    };
    Derived derived;
    derived.SetState(MastershipState::NoMasterPresent);
    [[maybe_unused]] const MODELKIT::IMKObject& base = derived;

    alignas(Fragment) std::byte zeros[sizeof(Fragment)];
    std::memset(zeros, 0, sizeof zeros);
    [[maybe_unused]] const auto* const unconstructed = reinterpret_cast<const Fragment*>(zeros);
    // A fragment of which the data block was overwritten.
    alignas(Fragment) std::byte overwritten[sizeof(Fragment)];
    std::memcpy(overwritten, static_cast<const void*>(&untouched), sizeof overwritten);
    std::memset(overwritten + sizeof overwritten - sizeof(void*), 1, sizeof(void*));
    [[maybe_unused]] const auto* const damaged = reinterpret_cast<const Fragment*>(overwritten);

    [[maybe_unused]] const auto type = PelLu300RouterMessage::Event;
    [[maybe_unused]] const auto state = MastershipState::MasterPresent;
    [[maybe_unused]] const auto noState = static_cast<MastershipState::State>(9);
    [[maybe_unused]] const auto choice = Fragment::DF_Params;
    [[maybe_unused]] const auto noChoice = untouched.GetChoiceFragment();

    PelLu300RouterInterfaceXml failing;
    if (failing.SetXmlString("<PelLu300RouterInterfaceXml>\n<a></b>", false))
        return EXIT_FAILURE;
    const MODELKIT::Failure failure = MODELKIT::IMKObject::GetLastFailure();
    const MODELKIT::Failure none;
    MODELKIT::Place place;
    place.file = "request.bin";
    place.offset = 0;

    lookHere();
    return EXIT_SUCCESS;
}
