// SPDX-License-Identifier: MIT
#include "WhereOption.h"

#include "UsageError.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

OptionTable whereOption()
{
    return option({"--where"}, "EXPR",
                  "Only messages that fit a condition, such as 'Type=Reply and DF_Params/Frequency>98e6'.");
}

MessageFilter::MessageFilter(const Arguments& arguments)
{
    if (!arguments.isGiven("--where"))
        return;
    try {
        m_condition = Condition(arguments.text("--where"));
    } catch (const InvalidCondition& error) {
        throw UsageError(error.GetText());
    }
}

bool MessageFilter::takes(const MODELKIT::IMKObject& message)
{
    if (!m_condition || m_condition->Holds(message))
        return true;
    ++m_leftOut;
    return false;
}

} // namespace routermsg
