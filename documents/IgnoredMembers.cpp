// SPDX-License-Identifier: MIT
#include "documents/IgnoredMembers.h"

#include "documents/DocumentError.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include "routerinterface/RecordInfo.h"

#include <algorithm>

namespace ROUTERDOCUMENTS {

using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

IgnoredMembers::IgnoredMembers(const QStringList& paths)
{
    for (const QString& path : paths) {
        m_patterns += parse(path);
        requireExisting(m_patterns.constLast(), path);
    }
}

IgnoredMembers::Pattern IgnoredMembers::parse(const QString& path)
{
    Pattern pattern;
    pattern.isFromRoot = path.startsWith(QLatin1Char('/'));
    for (const QString& step : path.mid(pattern.isFromRoot ? 1 : 0).split(QLatin1Char('/')))
        pattern.steps += parseStep(step, path);
    return pattern;
}

IgnoredMembers::Step IgnoredMembers::parseStep(const QString& text, const QString& path)
{
    Step step;
    const auto bracket = text.indexOf(QLatin1Char('['));
    step.name = text.left(bracket);
    if (bracket < 0)
        return step;
    const QString number = text.mid(bracket + 1, text.size() - bracket - 2);
    step.number = number == QLatin1String("*") ? 0 : number.toInt();
    if (!text.endsWith(QLatin1Char(']')) || (step.number < 1 && number != QLatin1String("*")))
        throw InvalidMemberPath(
            QStringLiteral(
                "%1 in the path %2 is not understood. Items have numbers from 1, as in %3[2], or *.")
                .arg(Quoted(text), Quoted(path), step.name));
    return step;
}

namespace {

using Classes = QVector<const RecordInfo*>;

// The members with that name in any of the classes.
QVector<const MemberInfo*> membersOf(const Classes& classes, const QString& name)
{
    QVector<const MemberInfo*> members;
    for (const RecordInfo* info : classes)
        if (const MemberInfo* member = info->FindMember(name))
            members += member;
    return members;
}

QStringList memberNames(const Classes& classes)
{
    QStringList names;
    for (const RecordInfo* info : classes)
        for (const MemberInfo* member : info->GetMembers())
            names += member->GetName();
    names.removeDuplicates();
    return names;
}

bool holdsItems(const QVector<const MemberInfo*>& members)
{
    return std::any_of(members.begin(), members.end(),
                       [](const MemberInfo* member) { return member->GetKind() == MemberInfo::List; });
}

// The classes of the records that the members hold.
Classes classesIn(const QVector<const MemberInfo*>& members)
{
    Classes classes;
    for (const MemberInfo* member : members)
        if (member->GetClass() && !classes.contains(member->GetClass()))
            classes += member->GetClass();
    return classes;
}

QStringList classNames()
{
    QStringList names;
    for (const RecordInfo* info : RecordInfo::All())
        names += info->GetName();
    return names;
}

} // namespace

void IgnoredMembers::requireExisting(const Pattern& pattern, const QString& path)
{
    const auto refuse = [&](const QString& what, const QString& name, const QStringList& names) {
        throw InvalidMemberPath(QStringLiteral("The %1 %2 in the path %3 does not exist.%4")
                                    .arg(what, Quoted(name), Quoted(path), DidYouMean(name, names)));
    };
    Classes classes = RecordInfo::All();
    auto step = pattern.steps.begin();
    // A path may begin with the class of the root. Some classes are also the names of members.
    const RecordInfo* root = RecordInfo::Find(step->name);
    if (pattern.isFromRoot && !root)
        refuse(QStringLiteral("record"), step->name, classNames());
    if (root && (pattern.isFromRoot || membersOf(classes, step->name).isEmpty())) {
        classes = {root};
        ++step;
    }
    for (; step != pattern.steps.end(); ++step) {
        const auto members = membersOf(classes, step->name);
        if (members.isEmpty())
            refuse(QStringLiteral("member"), step->name, memberNames(classes));
        if (step->number > 0 && !holdsItems(members))
            refuse(QStringLiteral("list"), step->name, QStringList());
        classes = classesIn(members);
    }
}

bool IgnoredMembers::Contains(const MemberPath& path) const
{
    return std::any_of(m_patterns.begin(), m_patterns.end(),
                       [&](const Pattern& pattern) { return matches(pattern, path.GetSteps()); });
}

bool IgnoredMembers::matches(const Pattern& pattern, const QVector<MemberPath::Step>& path)
{
    const auto excess = path.size() - pattern.steps.size();
    if (excess < 0 || (pattern.isFromRoot && excess > 0))
        return false;
    return std::equal(pattern.steps.begin(), pattern.steps.end(), path.begin() + excess,
                      [](const Step& step, const MemberPath::Step& actual) {
                          return step.name == actual.name
                                 && (step.number == 0 || step.number == actual.first
                                     || step.number == actual.second);
                      });
}

} // namespace ROUTERDOCUMENTS
