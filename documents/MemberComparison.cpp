// SPDX-License-Identifier: MIT
#include "documents/MemberComparison.h"

#include "documents/Text.h"
#include "documents/ValueTexts.h"
#include "documents/Values.h"

#include <cmath>

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;

const QStringList& ComparisonOperatorNames()
{
    static const QStringList names = {QStringLiteral("="),  QStringLiteral("!="), QStringLiteral("<"),
                                      QStringLiteral("<="), QStringLiteral(">"),  QStringLiteral(">="),
                                      QStringLiteral("~")};
    return names;
}

std::optional<ComparisonOperator> ComparisonOperatorNamed(const QString& name)
{
    const auto index = ComparisonOperatorNames().indexOf(name);
    return index < 0 ? std::nullopt : std::make_optional(static_cast<ComparisonOperator>(index));
}

namespace {

bool isNumeric(const MemberInfo& member)
{
    return member.GetKind() == MemberInfo::UnsignedInteger || member.GetKind() == MemberInfo::Decimal;
}

// Other than ValueFromText(), this takes every number: an unsigned integer can be compared with -1 or 0.5.
QVariant comparedValue(const MemberInfo& member, const QString& text)
{
    if (!isNumeric(member))
        return ValueFromText(member, text);
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? QVariant(number) : QVariant();
}

template <class Value>
bool isInOrder(const Value& a, ComparisonOperator comparison, const Value& b)
{
    switch (comparison) {
    case ComparisonOperator::Equal:
        return a == b;
    case ComparisonOperator::Unequal:
        return !(a == b);
    case ComparisonOperator::Less:
        return a < b;
    case ComparisonOperator::LessOrEqual:
        return a <= b;
    case ComparisonOperator::Greater:
        return a > b;
    case ComparisonOperator::GreaterOrEqual:
        return a >= b;
    case ComparisonOperator::Contains:
        break;
    }
    return false;
}

bool numberHolds(double a, ComparisonOperator comparison, double b)
{
    if (!std::isnan(a) || !std::isnan(b))
        return isInOrder(a, comparison, b);
    return comparison == ComparisonOperator::Equal || comparison == ComparisonOperator::LessOrEqual
           || comparison == ComparisonOperator::GreaterOrEqual;
}

bool hasEnumerator(const MemberInfo& member, int number)
{
    return number >= 0 && number < member.GetNames().size();
}

} // namespace

MemberComparison::MemberComparison(const MemberInfo& member, ComparisonOperator comparison,
                                   const QString& value, bool isQuoted)
    : m_member(&member), m_operator(comparison), m_value(comparedValue(member, value))
{
    const bool mayBeNull =
        member.GetKind() == MemberInfo::Text || member.GetKind() == MemberInfo::Enumeration;
    m_isNull = mayBeNull && !isQuoted && value == QLatin1String("null");
    requireSuitableOperator();
    if (!m_isNull && !m_value.isValid())
        throw UnsuitableComparison(true, WrongValue(member, value));
}

void MemberComparison::requireSuitableOperator() const
{
    const bool isEquality =
        m_operator == ComparisonOperator::Equal || m_operator == ComparisonOperator::Unequal;
    const bool isText = m_member->GetKind() == MemberInfo::Text;
    const QString& name = m_member->GetName();
    if (m_operator == ComparisonOperator::Contains && !isText)
        throw UnsuitableComparison(
            false,
            QStringLiteral("~ is for texts, but %1 is of the type %2.").arg(name, TypeName(*m_member)));
    if (!isEquality && m_isNull)
        throw UnsuitableComparison(
            false, QStringLiteral("null can only be compared with = and !=. In quotes it is a text."));
    if (!isEquality && !isText && !isNumeric(*m_member))
        throw UnsuitableComparison(
            false, QStringLiteral("%1 is of the type %2, which can only be compared with = and !=.")
                       .arg(name, TypeName(*m_member)));
}

bool MemberComparison::Holds(const IMKObject& record) const
{
    const QVariant value = m_member->GetValue(record);
    switch (m_member->GetKind()) {
    case MemberInfo::UnsignedInteger:
    case MemberInfo::Decimal:
        // A double holds every unsigned number exactly.
        return numberHolds(value.toDouble(), m_operator, m_value.toDouble());
    case MemberInfo::Boolean:
        return isInOrder(value.toBool(), m_operator, m_value.toBool());
    case MemberInfo::Text:
        return textHolds(value.toString());
    case MemberInfo::Enumeration:
        if (m_isNull)
            return hasEnumerator(*m_member, value.toInt()) == (m_operator == ComparisonOperator::Unequal);
        return isInOrder(value.toInt(), m_operator, m_value.toInt());
    case MemberInfo::Record:
    case MemberInfo::List:
        break;
    }
    return false;
}

bool MemberComparison::textHolds(const QString& text) const
{
    // A null text has no order and contains nothing; it is equal to no text, not even to the empty one.
    if (m_isNull)
        return text.isNull() == (m_operator == ComparisonOperator::Equal);
    if (text.isNull())
        return m_operator == ComparisonOperator::Unequal;
    const QString other = m_value.toString();
    return m_operator == ComparisonOperator::Contains ? text.contains(other)
                                                      : isInOrder(text, m_operator, other);
}

} // namespace ROUTERDOCUMENTS
