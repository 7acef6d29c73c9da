// SPDX-License-Identifier: MIT
// Conditions as trees, made from their texts. Not installed.
#pragma once

#include "modelkit/IMKObject.h"

#include <QtCore/QString>

#include <memory>

namespace ROUTERDOCUMENTS {

// A condition or a part of one.
class ConditionNode
{
public:
    ConditionNode() = default;
    ConditionNode(const ConditionNode&) = delete;
    ConditionNode& operator=(const ConditionNode&) = delete;
    virtual ~ConditionNode() = default;

    virtual bool Holds(const MODELKIT::IMKObject& record) const = 0;
};

// throws InvalidCondition
std::unique_ptr<const ConditionNode> ParseCondition(const QString& text);

} // namespace ROUTERDOCUMENTS
