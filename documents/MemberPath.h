/// \file
/// The way to a member in two records that are compared.
#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

namespace routermsg {

/// The way to a member in two records that are compared: names from the root's class down, where items have
/// their numbers in either of the two.
class MemberPath
{
public:
    struct Step
    {
        QString name;
        /// Of an item the number from 1, which is 0 in the document that does not have it; of all else 0.
        int first = 0;
        int second = 0;
    };

    void enter(const Step& step) { m_steps.append(step); }
    void leave() { m_steps.removeLast(); }
    /// Makes the last step that to an item, or to another one.
    void setNumbers(int first, int second)
    {
        m_steps.last().first = first;
        m_steps.last().second = second;
    }
    const QVector<Step>& steps() const { return m_steps; }

    /// Without the root: "PelLu300RouterMessage/Fragment[2]/DF_Params/Frequency". An item that has
    /// another number in the second record has both: "Fragment[2->3]".
    QString toText() const;
    /// The same in one of the records.
    QString inFirst() const { return inOne(&Step::first); }
    QString inSecond() const { return inOne(&Step::second); }

private:
    QString inOne(int Step::*number) const;

    QVector<Step> m_steps;
};

} // namespace routermsg
