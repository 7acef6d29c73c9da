// SPDX-License-Identifier: MIT
/// \file
/// The way to a member in two records that are compared.
#pragma once

#include "documents/Export.h"

#include <QtCore/QString>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

/// The way to a member in two records that are compared: names from the root's class down, where items have
/// their numbers in either of the two.
class ROUTERDOCUMENTS_EXPORT MemberPath
{
public:
    /// One name, of a member or of the root.
    struct Step
    {
        QString name;
        /// Of an item the number from 1, which is 0 in the document that does not have it; of all else 0.
        int first = 0;
        int second = 0;
    };

    /// Goes a step down, and back.
    /// @{
    void Enter(const Step& step) { m_steps.append(step); }
    void Leave() { m_steps.removeLast(); }
    /// @}
    /// Makes the last step that to an item, or to another one.
    void SetNumbers(int first, int second)
    {
        m_steps.last().first = first;
        m_steps.last().second = second;
    }
    /// The root first.
    const QVector<Step>& GetSteps() const { return m_steps; }

    /// Without the root: "PelLu300RouterMessage/Fragment[2]/DF_Params/Frequency". An item that has
    /// another number in the second record has both: "Fragment[2->3]".
    QString ToText() const;
    /// The same in one of the records, with its numbers.
    /// @{
    QString InFirst() const { return inOne(&Step::first); }
    QString InSecond() const { return inOne(&Step::second); }
    /// @}

private:
    QString inOne(int Step::*number) const;

    QVector<Step> m_steps;
};

} // namespace ROUTERDOCUMENTS
