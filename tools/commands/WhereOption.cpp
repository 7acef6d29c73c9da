// SPDX-License-Identifier: MIT
#include "WhereOption.h"

#include "UsageError.h"
#include "documents/PathPattern.h"
#include "documents/ValueTexts.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// Operators that are no "=" are left to the user, except where values can be offered behind them.
QStringList offeredParts()
{
    QStringList parts = {QStringLiteral("not"), QStringLiteral("and"), QStringLiteral("or")};
    for (const QString& path : PathPattern::Examples()) {
        const QStringList values = ListedValues(*PathPattern(path).GetMembers().constFirst());
        if (values.isEmpty())
            parts += path;
        else
            for (const char* comparison : {"=", "!="}) {
                const QString beginning = path + QLatin1String(comparison);
                parts += beginning;
                for (const QString& value : values)
                    parts += beginning + value;
            }
    }
    return parts;
}

} // namespace

OptionTable whereOption()
{
    return suggestingParts(
        offeredParts(), " ()",
        option({"--where"}, "EXPR",
               "Only messages that fit a condition, such as 'Type=Reply and DF_Params/Frequency>98e6'."));
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
