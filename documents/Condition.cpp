// SPDX-License-Identifier: MIT
#include "documents/Condition.h"

#include "documents/ConditionParser.h"
#include "documents/Text.h"

namespace ROUTERDOCUMENTS {

Condition::Condition(const QString& text) : m_root(ParseCondition(text)) {}

bool Condition::Holds(const MODELKIT::IMKObject& record) const { return m_root->Holds(record); }

InvalidCondition::InvalidCondition(const QString& condition, int column, const QString& reason)
    : m_column(column), m_text(QStringLiteral("The condition %1 is wrong at column %2: %3")
                                   .arg(Quoted(condition), QString::number(column), reason)),
      m_utf8(m_text.toUtf8())
{}

InvalidCondition::InvalidCondition(const InvalidCondition& other) noexcept = default;
InvalidCondition& InvalidCondition::operator=(const InvalidCondition& other) noexcept = default;
InvalidCondition::~InvalidCondition() = default;

} // namespace ROUTERDOCUMENTS
