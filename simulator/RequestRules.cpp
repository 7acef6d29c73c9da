// SPDX-License-Identifier: MIT
#include "simulator/RequestRules.h"

#include <limits>

namespace ROUTERSIM {

using PELLU300ROUTERINTERFACEXML::Fragment;

RequestRules::RequestRules(const Scenario& scenario, int client, quint64 seed)
    : m_scenario(scenario), m_client(client), m_random(seed, static_cast<quint64>(client)),
      m_refusals(scenario.refusals.size()), m_delays(scenario.delays.size()), m_faults(scenario.faults.size())
{}

Decision RequestRules::Decide(const QVector<Fragment>& request)
{
    QVector<Payload> payloads;
    Decision decision;
    for (const Fragment& fragment : request) {
        payloads += fragment.GetChoiceFragment();
        decision.isRefused += find(m_scenario.refusals, m_refusals, {payloads.constLast()}) != nullptr;
    }
    if (const Delay* delay = find(m_scenario.delays, m_delays, payloads))
        decision.delay = m_random.In(delay->span);
    if (const RequestFault* fault = find(m_scenario.faults, m_faults, payloads)) {
        decision.fault = fault->fault;
        decision.faultSeed = m_random.Below(std::numeric_limits<quint64>::max());
    }
    return decision;
}

template <class Rule>
const Rule* RequestRules::find(const QVector<Rule>& rules, QVector<Count>& counts,
                               const QVector<Payload>& payloads)
{
    for (int i = 0; i < static_cast<int>(rules.size()); ++i)
        if (applies(rules.at(i).filter, counts[i], payloads))
            return &rules.at(i);
    return nullptr;
}

bool RequestRules::applies(const RequestFilter& filter, Count& count, const QVector<Payload>& payloads)
{
    if (filter.client && *filter.client != m_client)
        return false;
    if (filter.payload && !payloads.contains(*filter.payload))
        return false;
    if (++count.seen <= filter.after || (filter.times && count.applied >= *filter.times))
        return false;
    if (!m_random.Happens(filter.probability))
        return false;
    ++count.applied;
    return true;
}

} // namespace ROUTERSIM
