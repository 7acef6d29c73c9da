// SPDX-License-Identifier: MIT
/// \file
/// The option --where: which messages a command works on, by what they hold.
#pragma once

#include "Arguments.h"
#include "documents/Condition.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QtGlobal>

#include <optional>

namespace routermsg {

OptionTable whereOption();

/// The messages that fit --where; all without this option.
class MessageFilter
{
public:
    /// \throws UsageError when the option is given and its value is no condition.
    explicit MessageFilter(const Arguments& arguments);

    /// Whether the option is given.
    bool isGiven() const { return m_condition.has_value(); }
    /// Whether the message fits. Counts it otherwise.
    bool takes(const MODELKIT::IMKObject& message);
    /// How many messages did not fit; none when the option is not given.
    std::optional<qint64> leftOut() const { return isGiven() ? std::make_optional(m_leftOut) : std::nullopt; }

private:
    std::optional<ROUTERDOCUMENTS::Condition> m_condition;
    qint64 m_leftOut = 0;
};

} // namespace routermsg
