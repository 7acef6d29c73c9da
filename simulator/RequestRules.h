// SPDX-License-Identifier: MIT
// What the scenario says about the requests of one client.
#pragma once

#include "simulator/Randomness.h"
#include "simulator/Scenario.h"

#include <QtCore/QVector>

#include <optional>

namespace ROUTERSIM {

struct Decision
{
    // For each fragment of the request.
    QVector<bool> isRefused;
    qint64 delay = 0;
    std::optional<Fault> fault;
    // For what is left to chance in the fault. It is drawn now, because the answer may come behind those to
    // later requests.
    quint64 faultSeed = 0;
};

// Keeps count of the requests. In each list of the scenario, the first that applies ends the search; those
// behind it do not count the request.
class RequestRules
{
public:
    // The number of the client, from 1.
    RequestRules(const Scenario& scenario, int client, quint64 seed);

    Decision Decide(const QVector<PELLU300ROUTERINTERFACEXML::Fragment>& request);

private:
    struct Count
    {
        qint64 seen = 0;
        qint64 applied = 0;
    };

    template <class Rule>
    const Rule* find(const QVector<Rule>& rules, QVector<Count>& counts, const QVector<Payload>& payloads);
    bool applies(const RequestFilter& filter, Count& count, const QVector<Payload>& payloads);

    const Scenario& m_scenario;
    const int m_client;
    Randomness m_random;
    QVector<Count> m_refusals;
    QVector<Count> m_delays;
    QVector<Count> m_faults;
};

} // namespace ROUTERSIM
