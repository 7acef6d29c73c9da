// SPDX-License-Identifier: MIT
// The members of DF_Params, one by one, with the ranges that the router has for them.
#pragma once

#include "simulator/Scenario.h"

namespace ROUTERSIM {

struct TuningMember
{
    using Tuning = PELLU300ROUTERINTERFACEXML::DF_Params;

    const char* name;
    Range RouterSettings::*range;
    double (Tuning::*get)() const;
    void (Tuning::*set)(double);
    bool (Tuning::*isSet)() const;
};

#define ROUTERSIM_TUNING(Name, range)                                                                      \
    {                                                                                                      \
        #Name, &RouterSettings::range, &TuningMember::Tuning::Get##Name, &TuningMember::Tuning::Set##Name, \
            &TuningMember::Tuning::Is##Name##Set                                                           \
    }
inline constexpr TuningMember tuningMembers[] = {
    ROUTERSIM_TUNING(Frequency, frequency),
    ROUTERSIM_TUNING(DemodulationFrequency, demodulationFrequency),
    ROUTERSIM_TUNING(Bandwidth, bandwidth),
    ROUTERSIM_TUNING(PanoramaSpan, panoramaSpan),
};
#undef ROUTERSIM_TUNING

} // namespace ROUTERSIM
