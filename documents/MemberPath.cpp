// SPDX-License-Identifier: MIT
#include "documents/MemberPath.h"

#include <QtCore/QStringList>

#include <algorithm>

namespace ROUTERDOCUMENTS {

namespace {

// Without the root, unless it is the only step.
template <class StepText>
QString pathText(const QVector<MemberPath::Step>& steps, const StepText& stepText)
{
    QStringList texts;
    for (const MemberPath::Step& step : steps)
        texts += stepText(step);
    if (texts.size() > 1)
        texts.removeFirst();
    return texts.join(QLatin1Char('/'));
}

QString numbered(const QString& name, const QString& number)
{
    return QStringLiteral("%1[%2]").arg(name, number);
}

} // namespace

QString MemberPath::ToText() const
{
    return pathText(m_steps, [](const Step& step) {
        if (step.first == step.second)
            return step.first == 0 ? step.name : numbered(step.name, QString::number(step.first));
        if (step.first == 0 || step.second == 0)
            return numbered(step.name, QString::number(std::max(step.first, step.second)));
        return numbered(step.name, QStringLiteral("%1->%2").arg(step.first).arg(step.second));
    });
}

QString MemberPath::inOne(int Step::*number) const
{
    return pathText(m_steps, [number](const Step& step) {
        return step.*number == 0 ? step.name : numbered(step.name, QString::number(step.*number));
    });
}

} // namespace ROUTERDOCUMENTS
