// SPDX-License-Identifier: MIT
// Comparing the value of a member with one that somebody wrote. Not installed.
#pragma once

#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <exception>
#include <optional>

namespace ROUTERDOCUMENTS {

enum class ComparisonOperator
{
    Equal,
    Unequal,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Contains
};

// "=", "!=" and so on.
const QStringList& ComparisonOperatorNames();
// None when there is no such operator.
std::optional<ComparisonOperator> ComparisonOperatorNamed(const QString& name);

// A value or an operator does not suit the member.
class UnsuitableComparison : public std::exception
{
public:
    UnsuitableComparison(bool isAboutValue, const QString& text) : m_isAboutValue(isAboutValue), m_text(text)
    {}

    // Otherwise the operator is wrong.
    bool IsAboutValue() const noexcept { return m_isAboutValue; }
    const QString& GetText() const noexcept { return m_text; }
    const char* what() const noexcept override { return "The member cannot be compared like this."; }

private:
    bool m_isAboutValue;
    QString m_text;
};

class MemberComparison
{
public:
    // isQuoted: whether the value was written in quotes.
    // throws UnsuitableComparison
    MemberComparison(const PELLU300ROUTERINTERFACEXML::MemberInfo& member, ComparisonOperator comparison,
                     const QString& value, bool isQuoted);

    const PELLU300ROUTERINTERFACEXML::MemberInfo& GetMember() const { return *m_member; }

    // Whether the member of the record, which must be set, fits.
    bool Holds(const MODELKIT::IMKObject& record) const;

private:
    void requireSuitableOperator() const;
    bool textHolds(const QString& text) const;

    const PELLU300ROUTERINTERFACEXML::MemberInfo* m_member;
    ComparisonOperator m_operator;
    // What is compared: a number, a truth value, the number of an enumerator or a text.
    QVariant m_value;
    // Whether it is the value of a null text, or of an enumeration without enumerator.
    bool m_isNull = false;
};

} // namespace ROUTERDOCUMENTS
