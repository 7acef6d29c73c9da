// SPDX-License-Identifier: MIT
/// \file
/// The path to a member in two records that are compared.
#pragma once

#include "documents/Export.h"

#include <QtCore/QString>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

/// The path to a member in two records that are compared: the names from the root's class down. An item has a
/// number in each of the two records.
class ROUTERDOCUMENTS_EXPORT MemberPath
{
public:
    /// One step of the path.
    struct Step
    {
        /// The name of a member or of the root's class.
        QString name;
        /// The number of an item in the first record, counted from 1. It is 0 when the record does not have
        /// the item, and for a step that is not an item.
        int first = 0;
        /// The same in the second record.
        int second = 0;
    };

    /// Appends a step.
    void Enter(const Step& step) { m_steps.append(step); }
    /// Removes the last step.
    void Leave() { m_steps.removeLast(); }
    /// Sets the item numbers of the last step: in the \a first and in the \a second record.
    void SetNumbers(int first, int second)
    {
        m_steps.last().first = first;
        m_steps.last().second = second;
    }
    /// The steps, beginning with the root.
    const QVector<Step>& GetSteps() const { return m_steps; }

    /// The path without the root: "PelLu300RouterMessage/Fragment[2]/DF_Params/Frequency". An item whose
    /// numbers differ has both: "Fragment[2->3]".
    QString ToText() const;
    /// The same with the numbers in the first record only.
    QString InFirst() const { return inOne(&Step::first); }
    /// The same with the numbers in the second record only.
    QString InSecond() const { return inOne(&Step::second); }

private:
    QString inOne(int Step::*number) const;

    QVector<Step> m_steps;
};

} // namespace ROUTERDOCUMENTS
