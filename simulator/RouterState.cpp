// SPDX-License-Identifier: MIT
#include "simulator/RouterState.h"

#include "simulator/TuningMembers.h"

#include <algorithm>
#include <cmath>

namespace ROUTERSIM {

using PELLU300ROUTERINTERFACEXML::DF_Params;
using PELLU300ROUTERINTERFACEXML::MastershipState;

RouterState::Answer RouterState::CarryOut(const QString& client, const Fragments& asked,
                                          const std::function<bool(int)>& isRefused)
{
    Answer result;
    for (int i = 0; i < static_cast<int>(asked.size()); ++i)
        result.reply += answer(client, asked.at(i), isRefused && isRefused(i), result.news);
    return result;
}

RouterState::Fragment RouterState::answer(const QString& client, const Fragment& asked, bool isRefused,
                                          Fragments& news)
{
    const Payload payload = asked.GetChoiceFragment();
    Fragment reply;
    switch (payload) {
    case Fragment::AcquireMastership:
        reply.GetAcquireMastership().SetSuccess(!isRefused && acquire(client, news));
        return reply;
    case Fragment::ReleaseMastership:
        reply.GetReleaseMastership().SetSuccess(!isRefused && release(client, news));
        return reply;
    case Fragment::DF_Params: {
        const DF_Params& wanted = asked.GetDF_Params();
        const bool mayTune = !isRefused && (!m_settings.onlyMasterTunes || isMaster(client));
        if (mayTune && wanted.AnyData()) {
            tune(wanted);
            news += Describe(payload);
        }
        return Describe(payload);
    }
    default:
        // A refusal has the kind of what was asked, and no content.
        if (isRefused)
            reply.InitChoice(payload);
        return isRefused ? reply : Describe(payload);
    }
}

RouterState::Fragment RouterState::Describe(Payload payload) const
{
    Fragment fragment;
    switch (payload) {
    case Fragment::MastershipState:
        fragment.SetMastershipState(m_settings.mastership);
        break;
    case Fragment::OstraInterfacePort:
        fragment.SetOstraInterfacePort(m_settings.ostraPort);
        break;
    case Fragment::PelVtConnectServer:
        fragment.SetPelVtConnectServer(m_settings.connectServer);
        break;
    case Fragment::RouterVtServerPort:
        fragment.SetRouterVtServerPort(m_settings.serverPort);
        break;
    case Fragment::DF_Params:
        fragment.SetDF_Params(m_settings.tuning);
        break;
    default:
        break;
    }
    return fragment;
}

// --- mastership -------------------------------------------------------------------------------

bool RouterState::isMaster(const QString& client) const
{
    MastershipState now = m_settings.mastership;
    return now.GetState() == MastershipState::MasterPresent && now.GetMasterClientID() == client;
}

bool RouterState::acquire(const QString& client, Fragments& news)
{
    if (isMaster(client))
        return true;
    const MastershipState::State now = m_settings.mastership.GetState();
    const bool isFree = now == MastershipState::NoMasterPresent
                        || (now == MastershipState::RouterIsMaster && m_settings.mayBeTakenFromRouter);
    if (!isFree)
        return false;
    m_settings.mastership = MastershipState();
    m_settings.mastership.SetState(MastershipState::MasterPresent);
    m_settings.mastership.SetMasterClientID(client);
    news += Describe(Fragment::MastershipState);
    return true;
}

bool RouterState::release(const QString& client, Fragments& news)
{
    if (!isMaster(client))
        return false;
    becomeFree(news);
    return true;
}

void RouterState::becomeFree(Fragments& news)
{
    m_settings.mastership = MastershipState();
    m_settings.mastership.SetState(MastershipState::NoMasterPresent);
    news += Describe(Fragment::MastershipState);
}

RouterState::Fragments RouterState::Leave(const QString& client)
{
    Fragments news;
    if (isMaster(client))
        becomeFree(news);
    return news;
}

// --- values -----------------------------------------------------------------------------------

void RouterState::tune(const DF_Params& wanted)
{
    for (const TuningMember& member : tuningMembers) {
        const double value = (wanted.*member.get)();
        // What is no number is in no range and next to no value.
        if (!(wanted.*member.isSet)() || std::isnan(value))
            continue;
        const Range& range = m_settings.*member.range;
        (m_settings.tuning.*member.set)(std::clamp(value, range.least, range.most));
    }
}

RouterState::Fragments RouterState::Happen(const Fragments& fragments)
{
    Fragments told;
    for (const Fragment& fragment : fragments) {
        const Payload payload = fragment.GetChoiceFragment();
        switch (payload) {
        case Fragment::MastershipState:
            m_settings.mastership = fragment.GetMastershipState();
            break;
        case Fragment::OstraInterfacePort:
            m_settings.ostraPort = fragment.GetOstraInterfacePort();
            break;
        case Fragment::PelVtConnectServer:
            m_settings.connectServer = fragment.GetPelVtConnectServer();
            break;
        case Fragment::RouterVtServerPort:
            m_settings.serverPort = fragment.GetRouterVtServerPort();
            break;
        case Fragment::DF_Params:
            tune(fragment.GetDF_Params());
            break;
        default:
            told += fragment;
            continue;
        }
        told += Describe(payload);
    }
    return told;
}

} // namespace ROUTERSIM
