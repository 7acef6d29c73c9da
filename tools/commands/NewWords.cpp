// SPDX-License-Identifier: MIT
#include "NewWords.h"

#include "Suggestions.h"
#include "UsageError.h"
#include "documents/Sentences.h"
#include "documents/Text.h"
#include "documents/ValueTexts.h"

#include <QtCore/QPair>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// --- members --------------------------------------------------------------------------------

bool isList(const MemberInfo& member) { return member.GetKind() == MemberInfo::List; }

// Calls visit(record class, member) for the members of every record class.
template <class Visit>
void forEachMember(const Visit& visit)
{
    for (const RecordInfo* info : RecordInfo::All())
        for (const MemberInfo* member : info->GetMembers())
            visit(*info, *member);
}

// The names of the classes that have a member for which the predicate holds.
template <class Predicate>
QStringList ownersOf(const Predicate& predicate)
{
    QStringList owners;
    forEachMember([&](const RecordInfo& info, const MemberInfo& member) {
        if (predicate(member))
            owners += info.GetName();
    });
    owners.removeDuplicates();
    return owners;
}

// --- plans of records -----------------------------------------------------------------------

/// A record to be built. The plan is complete before the first record is made, because appending copies a
/// list item.
struct Plan
{
    explicit Plan(const RecordInfo& recordClass) : info(recordClass) {}

    const RecordInfo& info;
    QVector<QPair<const MemberInfo*, QVariant>> values;
    std::vector<std::pair<const MemberInfo*, std::unique_ptr<Plan>>> owned;

    bool hasValue(const MemberInfo& member) const
    {
        return std::any_of(values.begin(), values.end(),
                           [&](const auto& value) { return value.first == &member; });
    }

    /// Whether this is a choice that has its member already.
    bool isFull() const { return info.IsChoice() && !owned.empty(); }

    /// A new item of a list, or the one nested record of the member.
    Plan& own(const MemberInfo& member)
    {
        const auto found = std::find_if(owned.begin(), owned.end(),
                                        [&](const auto& child) { return child.first == &member; });
        if (found != owned.end() && !isList(member))
            return *found->second;
        owned.emplace_back(&member, std::make_unique<Plan>(*member.GetClass()));
        return *owned.back().second;
    }
};

void fill(IMKObject& record, const Plan& plan)
{
    for (const auto& value : plan.values)
        value.first->SetValue(record, value.second);
    for (const auto& child : plan.owned) {
        if (!isList(*child.first)) {
            fill(child.first->EditRecord(record), *child.second);
            continue;
        }
        const auto item = child.second->info.Create();
        item->SetValidate(true);
        fill(*item, *child.second);
        child.first->AppendItem(record, *item);
    }
}

// --- understanding words --------------------------------------------------------------------

using Path = QVector<const MemberInfo*>;
using Predicate = std::function<bool(const MemberInfo&)>;

// The shortest paths from a class down to members for which the predicate holds.
QVector<Path> shortestPaths(const RecordInfo& from, const Predicate& holds,
                            const std::function<bool(const MemberInfo&)>& mayDescend)
{
    struct Step
    {
        const RecordInfo* info;
        Path path;
    };
    QVector<Step> level = {{&from, {}}};
    QVector<Path> found;
    while (found.isEmpty() && !level.isEmpty()) {
        QVector<Step> next;
        for (const Step& step : qAsConst(level)) {
            for (const MemberInfo* member : step.info->GetMembers()) {
                const Path path = step.path + Path{member};
                if (holds(*member))
                    found += path;
                else if (member->GetClass() && mayDescend(*member))
                    next += Step{member->GetClass(), path};
            }
        }
        level = next;
    }
    return found;
}

/// Understands words one by one.
class Builder
{
public:
    explicit Builder(const RecordInfo& root) : m_root(root), m_open{&m_root} {}

    void add(const QString& word)
    {
        const auto equals = word.indexOf(QLatin1Char('='));
        if (equals >= 0)
            setValue(word.left(equals), word.mid(equals + 1));
        else if (!openRecord(word) && !setEnumerator(word))
            refuseWord(word);
    }

    const Plan& plan() const { return m_root; }

private:
    // --- records

    // Searches from the record that was named last outwards for one that can own such a record, directly or
    // through others.
    bool openRecord(const QString& name)
    {
        const Predicate holds = [&](const MemberInfo& member) {
            return member.GetClass() && member.GetName() == name;
        };
        for (auto depth = m_open.size(); depth-- > 0;) {
            const auto paths =
                shortestPaths(m_open[depth]->info, holds, [](const MemberInfo&) { return true; });
            if (paths.isEmpty() || m_open[depth]->isFull())
                continue;
            m_open.resize(depth + 1);
            for (const MemberInfo* member : paths.front())
                m_open.push_back(&m_open.back()->own(*member));
            return true;
        }
        return false;
    }

    // --- values

    struct Found
    {
        Plan* plan;
        const MemberInfo* member;
    };

    // Searches from the record that was named last outwards for a member for which the predicate holds. The
    // search does not go down into lists and choices: it is not clear which item or payload is meant.
    std::optional<Found> findMember(const Predicate& holds)
    {
        for (auto depth = m_open.size(); depth-- > 0;) {
            const auto paths = shortestPaths(m_open[depth]->info, holds, [](const MemberInfo& member) {
                return !isList(member) && !member.GetClass()->IsChoice();
            });
            if (paths.isEmpty() || m_open[depth]->isFull())
                continue;
            Plan* plan = m_open[depth];
            const Path& path = paths.front();
            for (auto step = path.begin(); step + 1 != path.end(); ++step)
                plan = &plan->own(**step);
            return Found{plan, path.back()};
        }
        return std::nullopt;
    }

    void setValue(const QString& name, const QString& text)
    {
        const Predicate holds = [&](const MemberInfo& member) {
            return !member.GetClass() && member.GetName() == name;
        };
        const auto found = findMember(holds);
        if (!found)
            refuseMember(name, text);
        const QVariant value = ValueFromText(*found->member, text);
        if (!value.isValid())
            throw UsageError(WrongValue(*found->member, text));
        plan(*found, value);
    }

    bool setEnumerator(const QString& name)
    {
        const auto found =
            findMember([&](const MemberInfo& member) { return member.GetNames().contains(name); });
        if (found)
            plan(*found, ValueFromText(*found->member, name));
        return found.has_value();
    }

    static void plan(const Found& found, const QVariant& value)
    {
        if (found.plan->hasValue(*found.member))
            throw UsageError(QStringLiteral("%1 is given twice for the same %2.")
                                 .arg(found.member->GetName(), found.plan->info.GetName()));
        found.plan->values.append({found.member, value});
    }

    // --- mistakes

    [[noreturn]] void refuseMember(const QString& name, const QString& text) const
    {
        const QStringList owners = ownersOf(
            [&](const MemberInfo& member) { return !member.GetClass() && member.GetName() == name; });
        if (!owners.isEmpty())
            refuseElsewhere(name, owners, name + QLatin1Char('=') + text);
        if (RecordInfo::Find(name))
            throw UsageError(QStringLiteral("%1 is a record and has no value of its own.").arg(name));
        QStringList names;
        forEachMember([&](const RecordInfo&, const MemberInfo& member) {
            if (!member.GetClass())
                names += member.GetName();
        });
        names.removeDuplicates();
        throw UsageError(QStringLiteral("There is no member %1.%2%3")
                             .arg(Quoted(name), DidYouMean(name, names), possible(names)));
    }

    [[noreturn]] void refuseWord(const QString& word) const
    {
        const QStringList enumeratorOwners =
            ownersOf([&](const MemberInfo& member) { return member.GetNames().contains(word); });
        if (!enumeratorOwners.isEmpty())
            refuseElsewhere(word, enumeratorOwners, word);
        if (RecordInfo::Find(word))
            throw UsageError(
                QStringLiteral("There is no place for %1 in %2.").arg(word, m_root.info.GetName()));
        const QStringList words = possibleWords();
        if (words.contains(word + QLatin1Char('=')))
            throw UsageError(QStringLiteral("%1 needs a value: %1=...").arg(word));
        throw UsageError(QStringLiteral("The word %1 is not known.%2%3")
                             .arg(Quoted(word), didYouMeanWord(word, words), possible(words)));
    }

    // The word belongs to records that are not open here.
    [[noreturn]] void refuseElsewhere(const QString& name, const QStringList& owners,
                                      const QString& word) const
    {
        const auto nearest = std::find_if(owners.begin(), owners.end(),
                                          [&](const QString& owner) { return hasPlaceFor(owner); });
        const QString belongs = QStringLiteral("%1 belongs to %2").arg(name, Listed(owners));
        if (nearest == owners.end())
            throw UsageError(
                QStringLiteral("%1, for which there is no place in %2.").arg(belongs, m_root.info.GetName()));
        throw UsageError(
            QStringLiteral("%1. Name the record first: %2 %3").arg(belongs, *nearest, Printable(word)));
    }

    bool hasPlaceFor(const QString& record) const
    {
        const auto paths = shortestPaths(
            m_root.info,
            [&](const MemberInfo& member) { return member.GetClass() && member.GetName() == record; },
            [](const MemberInfo&) { return true; });
        return !paths.isEmpty();
    }

    Plan m_root;
    /// The records that own each other, from the root to the one that was named last.
    std::vector<Plan*> m_open;
};

QString describe(const MemberInfo& member)
{
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger:
    case MemberInfo::Decimal:
        return member.GetName() + QStringLiteral("=NUMBER");
    case MemberInfo::Boolean:
        return member.GetName() + QStringLiteral("=true|false");
    case MemberInfo::Text:
        return member.GetName() + QStringLiteral("=TEXT");
    case MemberInfo::Enumeration:
        return member.GetName() + QLatin1Char('=') + member.GetNames().join(QLatin1Char('|'));
    case MemberInfo::List:
        return member.GetName() + QStringLiteral("...");
    case MemberInfo::Record:
        break;
    }
    return member.GetName();
}

// What the member can be named with; "=" at the end if a value must follow.
QStringList wordsFor(const MemberInfo& member)
{
    const QString& name = member.GetName();
    return member.GetNames() + QStringList{member.GetClass() ? name : name + QLatin1Char('=')};
}

QStringList wordsWithValues(const MemberInfo& member)
{
    QStringList words;
    for (const QString& value : ListedValues(member))
        words += member.GetName() + QLatin1Char('=') + value;
    return words;
}

} // namespace

std::unique_ptr<IMKObject> build(const RecordInfo& root, const QStringList& words)
{
    Builder builder(root);
    for (const QString& word : words)
        builder.add(word);
    auto record = root.Create();
    record->SetValidate(true);
    fill(*record, builder.plan());
    return record;
}

QStringList recordNames()
{
    QStringList names;
    for (const RecordInfo* info : RecordInfo::All())
        names += info->GetName();
    return names;
}

QStringList possibleWords()
{
    QStringList words;
    forEachMember([&](const RecordInfo&, const MemberInfo& member) { words += wordsFor(member); });
    words.removeDuplicates();
    return words;
}

QStringList offeredWords()
{
    QStringList words = possibleWords();
    forEachMember([&](const RecordInfo&, const MemberInfo& member) { words += wordsWithValues(member); });
    words.removeDuplicates();
    return words;
}

QStringList offeredWordsOf(const RecordInfo& info)
{
    QStringList words;
    for (const MemberInfo* member : info.GetMembers())
        words += wordsFor(*member) + wordsWithValues(*member);
    words.removeDuplicates();
    return words;
}

QVector<RecordWords> describeWords()
{
    QVector<RecordWords> all;
    for (const RecordInfo* info : RecordInfo::All()) {
        QStringList words;
        for (const MemberInfo* member : info->GetMembers())
            words += describe(*member);
        all += {info->GetName(), info->IsChoice(), words};
    }
    return all;
}

} // namespace routermsg
