// The description of a record class, made from its member table.
#pragma once

#include "routerinterface/RecordInfo.h"
#include "routerinterface/machinery/Lifecycle.h"

#include <memory>
#include <typeinfo>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

constexpr MemberInfo::Kind kindOf(const Value<unsigned int>*) { return MemberInfo::UnsignedInteger; }
constexpr MemberInfo::Kind kindOf(const Value<double>*) { return MemberInfo::Decimal; }
constexpr MemberInfo::Kind kindOf(const Value<bool>*) { return MemberInfo::Boolean; }
template <class T>
constexpr MemberInfo::Kind kindOf(const Text<T>*)
{
    return MemberInfo::Text;
}
template <class E>
constexpr MemberInfo::Kind kindOf(const Enumerated<E>*)
{
    return MemberInfo::Enumeration;
}
template <class R>
constexpr MemberInfo::Kind kindOf(const Nested<R>*)
{
    return MemberInfo::Record;
}
template <class R>
constexpr MemberInfo::Kind kindOf(const List<R>*)
{
    return MemberInfo::List;
}

// The names of an enumerated member, the class of a nested one.
template <class E>
QStringList namesIn(const Enumerated<E>*)
{
    return NamesOf(E());
}
inline QStringList namesIn(const void*) { return QStringList(); }

template <class R>
const RecordInfo* classIn(const Nested<R>*)
{
    return &Walks<R>::info();
}
template <class R>
const RecordInfo* classIn(const List<R>*)
{
    return &Walks<R>::info();
}
inline const RecordInfo* classIn(const void*) { return nullptr; }

template <class R, class Member>
class MemberDescription final : public MemberInfo
{
    using Slot = typename Member::Slot;
    static constexpr const Slot* slot = nullptr;

public:
    MemberDescription()
        : MemberInfo(Member::nameText(), kindOf(slot), Member::binaryTag, machinery::IsMandatory<Slot>::value,
                     namesIn(slot), classIn(slot))
    {}

    bool IsSet(const MODELKIT::IMKObject& object) const override
    {
        const auto* data = existingData(record(object));
        if (!data)
            return false;
        if constexpr (IsList<Slot>::value)
            if (!Member::slot(*data).value.isEmpty())
                return true;
        return data->set.test(Member::index) && isCurrent(*data, Member{});
    }

    QVariant GetValue(const MODELKIT::IMKObject& object) const override
    {
        if constexpr (kindOf(slot) == Enumeration)
            return static_cast<int>(viewMember<Member>(record(object)));
        else if constexpr (isScalar)
            return viewMember<Member>(record(object));
        else
            return MemberInfo::GetValue(object);
    }

    void SetValue(MODELKIT::IMKObject& object, const QVariant& value) const override
    {
        if constexpr (kindOf(slot) == Enumeration)
            setMember<Member>(record(object), static_cast<decltype(Slot::value)>(value.toInt()));
        else if constexpr (isScalar)
            setMember<Member>(record(object), value.value<decltype(Slot::value)>());
        else
            MemberInfo::SetValue(object, value);
    }

    const MODELKIT::IMKObject& GetRecord(const MODELKIT::IMKObject& object) const override
    {
        if constexpr (IsNested<Slot>::value)
            return viewMember<Member>(record(object));
        else
            return MemberInfo::GetRecord(object);
    }

    MODELKIT::IMKObject& EditRecord(MODELKIT::IMKObject& object) const override
    {
        if constexpr (IsNested<Slot>::value)
            return editMember<Member>(record(object));
        else
            return MemberInfo::EditRecord(object);
    }

    int CountItems(const MODELKIT::IMKObject& object) const override
    {
        if constexpr (IsList<Slot>::value)
            return static_cast<int>(viewMember<Member>(record(object)).size());
        else
            return MemberInfo::CountItems(object);
    }

    const MODELKIT::IMKObject& GetItem(const MODELKIT::IMKObject& object, int index) const override
    {
        if constexpr (IsList<Slot>::value)
            return viewMember<Member>(record(object)).at(index);
        else
            return MemberInfo::GetItem(object, index);
    }

    void AppendItem(MODELKIT::IMKObject& object, const MODELKIT::IMKObject& item) const override
    {
        if constexpr (IsList<Slot>::value)
            append<Member>(record(object), dynamic_cast<const RecordIn<Slot>&>(item));
        else
            MemberInfo::AppendItem(object, item);
    }

private:
    static constexpr bool isScalar = !IsNested<Slot>::value && !IsList<Slot>::value;

    static const R& record(const MODELKIT::IMKObject& object) { return dynamic_cast<const R&>(object); }
    static R& record(MODELKIT::IMKObject& object) { return dynamic_cast<R&>(object); }
};

struct Description
{
    template <class R>
    static const RecordInfo& of()
    {
        static const std::unique_ptr<const RecordInfo> info(make<R>());
        return *info;
    }

private:
    template <class R>
    static std::unique_ptr<const RecordInfo> make()
    {
        std::unique_ptr<RecordInfo> info(new RecordInfo);
        info->m_name = DataOf<R>::className();
        info->m_id = R::id;
        info->m_isChoice = isChoice<DataOf<R>>;
        info->m_create = [] { return std::unique_ptr<MODELKIT::IMKObject>(new R); };
        DataOf<R>::Members::forEach(
            [&info](auto member) { info->m_members.append(new MemberDescription<R, decltype(member)>); });
        return info;
    }
};

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
