// SPDX-License-Identifier: MIT
#include "documents/PathPattern.h"

#include "documents/DocumentError.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include <algorithm>

namespace ROUTERDOCUMENTS {

using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

PathPattern::PathPattern(const QString& text, Brackets brackets)
    : m_text(text), m_isFromRoot(text.startsWith(QLatin1Char('/')))
{
    for (const QString& step : text.mid(m_isFromRoot ? 1 : 0).split(QLatin1Char('/')))
        m_steps += parse(step, text, brackets);
    resolve();
    findSurroundings();
}

// --- syntax

namespace {

// The number of an item; 0 when the text is none.
int itemNumber(const QString& text)
{
    const bool isDigits = std::all_of(text.begin(), text.end(), [](QChar unit) {
        return unit >= QLatin1Char('0') && unit <= QLatin1Char('9');
    });
    return isDigits ? text.toInt() : 0;
}

} // namespace

PathPattern::Step PathPattern::parse(const QString& text, const QString& path, Brackets brackets)
{
    Step step;
    const auto bracket = text.indexOf(QLatin1Char('['));
    step.name = text.left(bracket);
    if (bracket < 0)
        return step;
    const auto refuse = [&](const QString& rule) {
        throw InvalidMemberPath(QStringLiteral("%1 in the path %2 is not understood. %3")
                                    .arg(Quoted(text), Quoted(path), rule.arg(Printable(step.name))));
    };
    const QString inside = text.mid(bracket + 1, text.size() - bracket - 2);
    const QStringList numbers = inside.split(QStringLiteral("->"));
    step.first = itemNumber(numbers.constFirst());
    step.second = itemNumber(numbers.constLast());
    const bool isPair = numbers.size() == 2 && step.first > 0 && step.second > 0;
    if (!text.endsWith(QLatin1Char(']')))
        step.items = All;
    else if (inside == QLatin1String("*"))
        return step;
    else if (inside == QLatin1String("+") && brackets == ForEditing)
        step.items = New;
    else if (inside == QLatin1String("last") && brackets == ForEditing)
        step.items = Last;
    else if (numbers.size() == 1 && step.first > 0)
        step.items = Numbered;
    else if (isPair && brackets == OfTwoRecords)
        step.items = Paired;
    else if (isPair)
        refuse(
            QStringLiteral("It has the numbers of an item in two records. Write one of them, as in %1[2]."));
    if (step.items == All && brackets == ForEditing)
        refuse(QStringLiteral("Items have numbers from 1, as in %1[2]; * stands for all items, last for the "
                              "last one and + for a new one."));
    if (step.items == All)
        refuse(QStringLiteral("Items have numbers from 1, as in %1[2], or *."));
    return step;
}

// --- names

namespace {

using RecordClasses = QVector<const RecordInfo*>;

// The members with that name in any of the classes.
QVector<const MemberInfo*> membersNamed(const QString& name, const RecordClasses& classes)
{
    QVector<const MemberInfo*> members;
    for (const RecordInfo* info : classes)
        if (const MemberInfo* member = info->FindMember(name))
            members += member;
    return members;
}

QStringList memberNamesOf(const RecordClasses& classes)
{
    QStringList names;
    for (const RecordInfo* info : classes)
        for (const MemberInfo* member : info->GetMembers())
            names += member->GetName();
    names.removeDuplicates();
    return names;
}

bool includesList(const QVector<const MemberInfo*>& members)
{
    return std::any_of(members.begin(), members.end(),
                       [](const MemberInfo* member) { return member->GetKind() == MemberInfo::List; });
}

// The classes of the records that the members hold.
RecordClasses classesIn(const QVector<const MemberInfo*>& members)
{
    RecordClasses classes;
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

void PathPattern::resolve()
{
    const auto refuse = [&](const QString& what, const QString& name, const QStringList& names) {
        throw InvalidMemberPath(QStringLiteral("The %1 %2 in the path %3 does not exist.%4")
                                    .arg(what, Quoted(name), Quoted(m_text), DidYouMean(name, names)));
    };
    RecordClasses classes = RecordInfo::All();
    auto step = m_steps.constBegin();
    // A path may begin with the class of the root. Some classes are also the names of members.
    const RecordInfo* root = RecordInfo::Find(step->name);
    if (m_isFromRoot && !root)
        refuse(QStringLiteral("record"), step->name, classNames());
    if (root && (m_isFromRoot || membersNamed(step->name, classes).isEmpty())) {
        if (step->items != All)
            refuse(QStringLiteral("list"), step->name, QStringList());
        classes = {root};
        ++step;
    }
    for (; step != m_steps.constEnd(); ++step) {
        m_members = membersNamed(step->name, classes);
        if (m_members.isEmpty())
            refuse(QStringLiteral("member"), step->name, memberNamesOf(classes));
        if (step->items != All && !includesList(m_members))
            refuse(QStringLiteral("list"), step->name, QStringList());
        classes = classesIn(m_members);
    }
}

void PathPattern::findSurroundings()
{
    const auto isAround = [&](const RecordInfo* info) {
        const auto& members = info->GetMembers();
        return std::any_of(members.begin(), members.end(), [&](const MemberInfo* member) {
            return m_members.contains(member)
                   || (member->GetClass() && m_around.contains(member->GetClass()));
        });
    };
    // Every class stands before those that it owns.
    const RecordClasses& classes = RecordInfo::All();
    for (auto info = classes.rbegin(); info != classes.rend(); ++info)
        if (isAround(*info))
            m_around.insert(*info);
}

// --- matching

bool PathPattern::Matches(const MemberPath& path) const
{
    const auto& steps = path.GetSteps();
    const auto excess = steps.size() - m_steps.size();
    if (excess < 0 || (m_isFromRoot && excess > 0))
        return false;
    return std::equal(m_steps.begin(), m_steps.end(), steps.begin() + excess,
                      [](const Step& step, const MemberPath::Step& actual) {
                          if (step.name != actual.name || step.items == New || step.items == Last)
                              return false;
                          if (step.items == Paired)
                              return step.first == actual.first && step.second == actual.second;
                          return step.items == All || step.first == actual.first
                                 || step.first == actual.second;
                      });
}

bool PathPattern::CanRepeat() const
{
    const auto& roots = RecordInfo::All();
    return std::any_of(roots.begin(), roots.end(), [&](const RecordInfo* root) {
        MemberPath path;
        path.Enter({root->GetName()});
        QVector<bool> lists{false};
        return repeatsBelow(*root, lists, path);
    });
}

// Whether a path through classes leads to a member through a list whose items it does not number.
// \param lists for each step of the path whether it is a list
bool PathPattern::repeatsBelow(const RecordInfo& info, QVector<bool>& lists, MemberPath& path) const
{
    const auto namesMatch = [&] {
        const auto& steps = path.GetSteps();
        const auto excess = steps.size() - m_steps.size();
        return excess >= 0 && (!m_isFromRoot || excess == 0)
               && std::equal(
                   m_steps.begin(), m_steps.end(), steps.begin() + excess,
                   [](const Step& step, const MemberPath::Step& actual) { return step.name == actual.name; });
    };
    const auto leavesListOpen = [&] {
        const auto excess = lists.size() - m_steps.size();
        for (auto i = lists.size(); i-- > 0;)
            if (lists.at(i) && (i < excess || m_steps.at(i - excess).items == All))
                return true;
        return false;
    };
    for (const MemberInfo* member : info.GetMembers()) {
        path.Enter({member->GetName()});
        lists.append(member->GetKind() == MemberInfo::List);
        const bool repeats = (m_members.contains(member) && namesMatch() && leavesListOpen())
                             || (member->GetClass() && LeadsInto(*member->GetClass())
                                 && repeatsBelow(*member->GetClass(), lists, path));
        lists.removeLast();
        path.Leave();
        if (repeats)
            return true;
    }
    return false;
}

QStringList PathPattern::Examples()
{
    QStringList paths;
    for (const RecordInfo* info : RecordInfo::All())
        for (const MemberInfo* member : info->GetMembers())
            paths << member->GetName() << info->GetName() + QLatin1Char('/') + member->GetName();
    paths.removeDuplicates();
    return paths;
}

} // namespace ROUTERDOCUMENTS
