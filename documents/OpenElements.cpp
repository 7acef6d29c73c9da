// SPDX-License-Identifier: MIT
#include "documents/OpenElements.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

#include <algorithm>

namespace ROUTERDOCUMENTS {

using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

constexpr int mostNames = 64;

using Names = QSet<quint64>;

void addElementsInside(const RecordInfo& info, Names& names)
{
    for (const MemberInfo* member : info.GetMembers()) {
        const auto name =
            NameHash::Of(member->GetClass() ? member->GetClass()->GetName() : member->GetName());
        const bool isNew = !names.contains(name.Get());
        names.insert(name.Get());
        if (isNew && member->GetClass())
            addElementsInside(*member->GetClass(), names);
    }
}

// For the name of each record, the names of the elements inside it at any depth.
const QHash<quint64, Names>& elementsInside()
{
    static const QHash<quint64, Names> all = [] {
        QHash<quint64, Names> names;
        for (const RecordInfo* info : RecordInfo::All())
            addElementsInside(*info, names[NameHash::Of(info->GetName()).Get()]);
        return names;
    }();
    return all;
}

quint64 hashOfDocuments()
{
    static const quint64 hash = NameHash::Of(RecordInfo::Document().GetName()).Get();
    return hash;
}

} // namespace

NameHash NameHash::Of(const QString& name)
{
    NameHash hash;
    const QByteArray latin = name.toLatin1();
    for (const char character : latin)
        hash.Add(static_cast<unsigned char>(character));
    return hash;
}

bool OpenElements::BeginsAnother(const NameHash& name) const
{
    if (m_depth == 0 || name.HasPrefix())
        return false;
    const quint64 root = m_names.first();
    if (name.Get() != hashOfDocuments() && name.Get() != root)
        return false;
    const auto inside = elementsInside().constFind(root);
    if (inside == elementsInside().constEnd())
        return m_isDamaged && name.Get() == hashOfDocuments();
    return !inside->contains(name.Get()) && (m_isDamaged || AreAllKnown());
}

bool OpenElements::AreAllKnown() const
{
    const Names inside = elementsInside().value(m_names.first());
    return m_depth == m_names.size() && std::all_of(m_names.begin() + 1, m_names.end(), [&](quint64 name) {
               return inside.contains(name);
           });
}

void OpenElements::Open(const NameHash& name)
{
    if (m_depth < mostNames)
        m_names.append(name.Get());
    ++m_depth;
}

void OpenElements::Close(const NameHash& name)
{
    const bool isNamed = m_depth <= m_names.size() && m_depth > 0;
    const bool fits = !isNamed || m_names.last() == name.Get();
    m_isDamaged = m_isDamaged || !fits;
    m_isRootLeft =
        !fits && m_depth > 1 && m_names.first() == name.Get() && m_names.indexOf(name.Get(), 1) < 0;
    if (isNamed)
        m_names.removeLast();
    --m_depth;
}

} // namespace ROUTERDOCUMENTS
