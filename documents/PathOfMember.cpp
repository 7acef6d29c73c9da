// SPDX-License-Identifier: MIT
#include "documents/PathOfMember.h"

#include <QtCore/QStringList>

namespace ROUTERDOCUMENTS {

using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

QString withoutNumber(const QString& step) { return step.section(QLatin1Char('['), 0, 0); }

} // namespace

PathOfMember::PathOfMember(const QString& path)
{
    const QStringList steps = path.split(QLatin1Char('/'));
    const QString last = withoutNumber(steps.constLast());
    const RecordInfo* const before =
        steps.size() < 2 ? nullptr : RecordInfo::Find(withoutNumber(steps.at(steps.size() - 2)));
    const MemberInfo* const found = before ? before->FindMember(last) : nullptr;
    if (found && !found->GetClass()) {
        record = before;
        member = found;
        return;
    }
    record = RecordInfo::Find(last);
    owner = before;
}

} // namespace ROUTERDOCUMENTS
