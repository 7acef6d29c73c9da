// SPDX-License-Identifier: MIT
// The rules of the simulated router. It has no connections and no time.
#pragma once

#include "simulator/Scenario.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <functional>

namespace ROUTERSIM {

class RouterState
{
public:
    using Fragment = PELLU300ROUTERINTERFACEXML::Fragment;
    using Fragments = QVector<Fragment>;

    struct Answer
    {
        // As many as were asked, of the same kinds.
        Fragments reply;
        // What all clients are told, each in an event of its own.
        Fragments news;
    };

    explicit RouterState(const RouterSettings& settings) : m_settings(settings) {}

    // Carries out a request of the client with that id. IsRefused: whether the fragment with that index is
    // refused whatever the rules say.
    Answer CarryOut(const QString& client, const Fragments& asked,
                    const std::function<bool(int)>& isRefused = {});
    // The client's connection is lost.
    Fragments Leave(const QString& client);
    // What the scenario lets happen. The result is what all clients are told in one event.
    Fragments Happen(const Fragments& fragments);

    // What the router has now. None when the payload is no state but an action.
    Fragment Describe(Payload payload) const;

private:
    bool isMaster(const QString& client) const;
    bool acquire(const QString& client, Fragments& news);
    bool release(const QString& client, Fragments& news);
    void becomeFree(Fragments& news);
    // Values outside of their range become the value of the range that is next to them.
    void tune(const PELLU300ROUTERINTERFACEXML::DF_Params& wanted);
    Fragment answer(const QString& client, const Fragment& asked, bool isRefused, Fragments& news);

    // The members of the state are those of now.
    RouterSettings m_settings;
};

} // namespace ROUTERSIM
